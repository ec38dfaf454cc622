#include "platform/windows/automation.h"

#include <utility>

#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr int kForwardOnlyAndImmediately = 48;

VARIANT TextVariant(const std::string& text) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(Wide(text).c_str());
  return value;
}

VARIANT NumberVariant(int number) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_I4;
  value.lVal = number;
  return value;
}

}  // namespace

ComponentLibrary::ComponentLibrary() : started_(SUCCEEDED(OleInitialize(nullptr))) {}

ComponentLibrary::~ComponentLibrary() {
  if (started_) OleUninitialize();
}

Automation Automation::FromMoniker(const std::string& moniker) {
  using GetObjectCall = HRESULT(WINAPI*)(LPCWSTR, BIND_OPTS*, REFIID, void**);
  const auto get_object = LookUp<GetObjectCall>("ole32.dll", "CoGetObject");
  void* object = nullptr;
  if (get_object == nullptr ||
      FAILED(get_object(Wide(moniker).c_str(), nullptr, IID_IDispatch, &object))) {
    return Automation();
  }
  return Automation(static_cast<IDispatch*>(object));
}

Automation::Automation(Automation&& other) noexcept
    : object_(std::exchange(other.object_, nullptr)) {}

Automation& Automation::operator=(Automation&& other) noexcept {
  std::swap(object_, other.object_);
  return *this;
}

Automation::~Automation() {
  if (object_ != nullptr) object_->Release();
}

bool Automation::Invoke(const std::string& name, WORD kind, VARIANT* arguments, UINT count,
                        VARIANT* result) {
  if (object_ == nullptr) return false;
  std::wstring wide = Wide(name);
  OLECHAR* names = wide.data();
  DISPID id = 0;
  if (FAILED(object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id))) return false;
  DISPPARAMS parameters = {arguments, nullptr, count, 0};
  return SUCCEEDED(object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result,
                                   nullptr, nullptr));
}

Automation Automation::CallWithTextAndNumber(const std::string& method, const std::string& text,
                                             const std::string& language, int flags) {
  // The arguments of a late-bound call stand in reverse order.
  VARIANT arguments[] = {NumberVariant(flags), TextVariant(language), TextVariant(text)};
  VARIANT result;
  VariantInit(&result);
  const bool called = Invoke(method, DISPATCH_METHOD, arguments, 3, &result);
  for (VARIANT& argument : arguments) VariantClear(&argument);
  if (called && result.vt == VT_DISPATCH) return Automation(result.pdispVal);
  VariantClear(&result);
  return Automation();
}

std::optional<std::string> Automation::Text(const std::string& property) {
  VARIANT result;
  VariantInit(&result);
  std::optional<std::string> text;
  // Asked as late-bound callers do, who cannot tell a property from a method.
  constexpr WORD kGet = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  if (Invoke(property, kGet, nullptr, 0, &result) && result.vt == VT_BSTR) {
    text = FromWide(std::wstring_view(result.bstrVal, SysStringLen(result.bstrVal)));
  }
  VariantClear(&result);
  return text;
}

void Automation::ForEach(const std::function<bool(Automation&)>& visit) {
  if (object_ == nullptr) return;
  VARIANT result;
  VariantInit(&result);
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  if (FAILED(object_->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                             DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, &result, nullptr,
                             nullptr)) ||
      result.vt != VT_UNKNOWN) {
    VariantClear(&result);
    return;
  }
  void* found = nullptr;
  if (FAILED(result.punkVal->QueryInterface(IID_IEnumVARIANT, &found))) found = nullptr;
  VariantClear(&result);
  if (found == nullptr) return;
  IEnumVARIANT* members = static_cast<IEnumVARIANT*>(found);
  VARIANT member;
  VariantInit(&member);
  bool more = true;
  while (more && members->Next(1, &member, nullptr) == S_OK) {
    if (member.vt == VT_DISPATCH) {
      Automation object(member.pdispVal);
      more = visit(object);
    } else {
      VariantClear(&member);
    }
  }
  members->Release();
}

void QueryManagement(const std::string& query, const std::function<bool(Automation&)>& visit) {
  Automation service = Automation::FromMoniker("winmgmts:\\\\.\\root\\cimv2");
  Automation rows =
      service.CallWithTextAndNumber("ExecQuery", query, "WQL", kForwardOnlyAndImmediately);
  rows.ForEach(visit);
}

}  // namespace quorvale::windows
