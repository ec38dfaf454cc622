#include "platform/windows/dispatch.h"

#include <cstdio>

#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

// Asked as late-bound callers do, who cannot tell a property from a method.
constexpr WORD kGet = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

// Releases what the system gave along with a failure.
void TellRefusal(const std::string& name, HRESULT result, EXCEPINFO& details, std::string* reason) {
  std::string words;
  if (result == DISP_E_EXCEPTION) {
    if (details.pfnDeferredFillIn != nullptr) details.pfnDeferredFillIn(&details);
    const BSTR text = details.bstrDescription;
    if (text != nullptr) words = FromWide(std::wstring_view(text, SysStringLen(text)));
    SysFreeString(details.bstrSource);
    SysFreeString(details.bstrDescription);
    SysFreeString(details.bstrHelpFile);
  }
  if (reason == nullptr) return;
  if (words.empty()) {
    char number[16];
    std::snprintf(number, sizeof(number), "&H%08lX", static_cast<unsigned long>(result));
    words = name + ": " + number;
  }
  *reason = words;
}

}  // namespace

Variant::Variant(const std::wstring& text) : Variant() {
  value_.vt = VT_BSTR;
  value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

Variant::Variant(int number) : Variant() {
  value_.vt = VT_I4;
  value_.lVal = number;
}

Variant::Variant(bool truth) : Variant() {
  value_.vt = VT_BOOL;
  value_.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
}

Variant::Variant(IDispatch* object) : Variant() {
  value_.vt = VT_DISPATCH;
  value_.pdispVal = object;
  if (object != nullptr) object->AddRef();
}

Variant::Variant(IUnknown* object) : Variant() {
  value_.vt = VT_UNKNOWN;
  value_.punkVal = object;
  if (object != nullptr) object->AddRef();
}

Variant Variant::LeftOut() {
  Variant left_out;
  left_out.value_.vt = VT_ERROR;
  left_out.value_.scode = DISP_E_PARAMNOTFOUND;
  return left_out;
}

Variant::Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }

Variant& Variant::operator=(Variant&& other) noexcept {
  std::swap(value_, other.value_);
  return *this;
}

Variant Variant::As(VARTYPE kind) const {
  Variant changed;
  VARIANT source = value_;  // not counted: it is only looked at
  if (FAILED(VariantChangeType(&changed.value_, &source, 0, kind))) return Variant();
  return changed;
}

double Variant::Number() const {
  const Variant number = As(VT_R8);
  return number.kind() == VT_R8 ? number.value_.dblVal : 0;
}

bool Variant::Truth() const { return Number() != 0; }

std::wstring Variant::Text() const {
  if (value_.vt != VT_BSTR || value_.bstrVal == nullptr) return L"";
  return std::wstring(value_.bstrVal, SysStringLen(value_.bstrVal));
}

IUnknown* Variant::Object() const {
  return value_.vt == VT_UNKNOWN || value_.vt == VT_DISPATCH ? value_.punkVal : nullptr;
}

IDispatch* MakeSystemObject(const std::string& name) {
  CLSID kind;
  void* object = nullptr;
  if (FAILED(CLSIDFromProgID(Wide(name).c_str(), &kind)) ||
      FAILED(CoCreateInstance(kind, nullptr, CLSCTX_SERVER, IID_IDispatch, &object))) {
    return nullptr;
  }
  return static_cast<IDispatch*>(object);
}

Dispatch Dispatch::Of(IUnknown* object) {
  void* found = nullptr;
  if (object == nullptr || FAILED(object->QueryInterface(IID_IDispatch, &found))) return Dispatch();
  return Dispatch(static_cast<IDispatch*>(found));
}

Dispatch Dispatch::FromMoniker(const std::string& moniker) {
  using GetObjectCall = HRESULT(WINAPI*)(LPCWSTR, BIND_OPTS*, REFIID, void**);
  const auto get_object = LookUp<GetObjectCall>("ole32.dll", "CoGetObject");
  void* object = nullptr;
  if (get_object == nullptr ||
      FAILED(get_object(Wide(moniker).c_str(), nullptr, IID_IDispatch, &object))) {
    return Dispatch();
  }
  return Dispatch(static_cast<IDispatch*>(object));
}

Dispatch::Dispatch(Dispatch&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

Dispatch& Dispatch::operator=(Dispatch&& other) noexcept {
  std::swap(object_, other.object_);
  return *this;
}

Dispatch::~Dispatch() {
  if (object_ != nullptr) object_->Release();
}

bool Dispatch::Get(const std::string& property, Variant* value, std::string* reason) {
  return Call(property, {}, value, reason);
}

bool Dispatch::Put(const std::string& property, Variant value, std::string* reason) {
  std::vector<Variant> arguments = Arguments(std::move(value));
  if (Invoke(property, DISPATCH_PROPERTYPUT, arguments, nullptr, reason)) return true;
  // Some properties take an object by reference only.
  return arguments[0].Object() != nullptr &&
         Invoke(property, DISPATCH_PROPERTYPUTREF, arguments, nullptr, nullptr);
}

bool Dispatch::Call(const std::string& method, std::vector<Variant> arguments, Variant* result,
                    std::string* reason) {
  return Invoke(method, kGet, arguments, result, reason);
}

bool Dispatch::ForEach(const std::function<bool(Variant&)>& visit, std::string* reason) {
  std::vector<Variant> none;
  Variant answer;
  if (!InvokeById(DISPID_NEWENUM, "_NewEnum", kGet, none, &answer, reason)) return false;
  void* found = nullptr;
  if (answer.kind() != VT_UNKNOWN || answer.Object() == nullptr ||
      FAILED(answer.Object()->QueryInterface(IID_IEnumVARIANT, &found))) {
    return true;
  }
  auto* enumeration = static_cast<IEnumVARIANT*>(found);
  bool more = true;
  while (more) {
    Variant member;
    more = enumeration->Next(1, member.get(), nullptr) == S_OK && visit(member);
  }
  enumeration->Release();
  return true;
}

std::optional<std::string> Dispatch::Text(const std::string& property) {
  Variant value;
  if (!Get(property, &value) || value.kind() != VT_BSTR) return std::nullopt;
  return FromWide(value.Text());
}

Dispatch Dispatch::GetObject(const std::string& property) {
  Variant value;
  return Get(property, &value) ? Of(value.Object()) : Dispatch();
}

bool Dispatch::Invoke(const std::string& name, WORD kind, std::vector<Variant>& arguments,
                      Variant* result, std::string* reason) {
  EXCEPINFO none = {};
  HRESULT known = E_POINTER;
  DISPID id = 0;
  if (object_ != nullptr) {
    std::wstring wide = Wide(name);
    OLECHAR* names = wide.data();
    known = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  }
  if (SUCCEEDED(known)) return InvokeById(id, name, kind, arguments, result, reason);
  TellRefusal(name, known, none, reason);
  return false;
}

bool Dispatch::InvokeById(DISPID id, const std::string& name, WORD kind,
                          std::vector<Variant>& arguments, Variant* result, std::string* reason) {
  EXCEPINFO details = {};
  HRESULT called = E_POINTER;
  if (object_ != nullptr) {
    std::vector<VARIANT> values;  // in reverse order; the arguments keep what these point at
    for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
      values.push_back(*argument->get());
    }
    const bool puts = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters = {values.data(), puts ? &put : nullptr, static_cast<UINT>(values.size()),
                             puts ? 1u : 0u};
    called = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                             result == nullptr ? nullptr : result->get(), &details, nullptr);
  }
  if (SUCCEEDED(called)) return true;
  TellRefusal(name, called, details, reason);
  return false;
}

}  // namespace quorvale::windows
