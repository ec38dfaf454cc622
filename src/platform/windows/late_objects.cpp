#include "platform/windows/late_objects.h"

#include "platform/windows/dispatch.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

class DispatchObject : public LateBound {
 public:
  explicit DispatchObject(Dispatch object) : object_(std::move(object)) {}

  IDispatch* object() const { return object_.get(); }
  std::string TypeName() override;
  LateValue Get(const std::string& property, const std::vector<LateValue>& arguments) override {
    return Call(property, arguments);
  }
  void Set(const std::string& property, const LateValue& value) override;
  LateValue Call(const std::string& method, const std::vector<LateValue>& arguments) override;
  std::vector<LateValue> Members() override;

 private:
  Dispatch object_;
};

Variant VariantOf(const LateValue& value) {
  // A text ends at its NUL, which some systems give along.
  if (const auto* text = std::get_if<std::string>(&value)) {
    return Variant(std::wstring(Wide(*text).c_str()));
  }
  if (const auto* number = std::get_if<int>(&value)) return Variant(*number);
  if (const auto* truth = std::get_if<bool>(&value)) return Variant(*truth);
  if (const auto* object = dynamic_cast<DispatchObject*>(ObjectOf(value).get())) {
    return Variant(object->object());
  }
  return Variant::LeftOut();
}

// Null for no object.
LateObject LateObjectOf(Dispatch object) {
  return object ? std::make_shared<DispatchObject>(std::move(object)) : nullptr;
}

LateValue ValueOf(const Variant& value) {
  switch (value.kind()) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
      return {};
    case VT_BOOL:
      return value.Truth();
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return LateObjectOf(Dispatch::Of(value.Object()));
    case VT_I2:
    case VT_I4:
    case VT_UI1:
    case VT_INT:
    case VT_UINT: {
      Variant number = value.As(VT_I4);
      if (number.kind() != VT_I4) return {};
      return static_cast<int>(number.get()->lVal);
    }
    default: {
      const Variant text = value.As(VT_BSTR);
      if (text.kind() != VT_BSTR) return {};
      return FromWide(text.Text());
    }
  }
}

std::string DispatchObject::TypeName() {
  ITypeInfo* type = nullptr;
  if (FAILED(object()->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type)) || type == nullptr) {
    return "Object";
  }
  BSTR name = nullptr;
  type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  type->Release();
  std::string text = name == nullptr ? "" : FromWide(std::wstring_view(name, SysStringLen(name)));
  SysFreeString(name);
  // The interface that stands for a kind of object is named like it behind an underscore.
  if (text.starts_with("_")) text.erase(0, 1);
  return text.empty() ? "Object" : text;
}

void DispatchObject::Set(const std::string& property, const LateValue& value) {
  std::string reason;
  if (!object_.Put(property, VariantOf(value), &reason)) throw LateBoundError(reason);
}

LateValue DispatchObject::Call(const std::string& method, const std::vector<LateValue>& arguments) {
  std::vector<Variant> values;
  for (const LateValue& argument : arguments) values.push_back(VariantOf(argument));
  Variant answer;
  std::string reason;
  if (!object_.Call(method, std::move(values), &answer, &reason)) throw LateBoundError(reason);
  return ValueOf(answer);
}

std::vector<LateValue> DispatchObject::Members() {
  std::vector<LateValue> members;
  std::string reason;
  const bool told = object_.ForEach(
      [&](Variant& member) {
        members.push_back(ValueOf(member));
        return true;
      },
      &reason);
  if (!told) throw LateBoundError(reason);
  return members;
}

}  // namespace

LateObject LateObjects::Create(const std::string& name) {
  return LateObjectOf(Dispatch(MakeSystemObject(name)));
}

LateObject LateObjects::ObjectContext() {
  using ContextCall = HRESULT(WINAPI*)(REFIID, void**);
  const auto context = LookUp<ContextCall>("ole32.dll", "CoGetObjectContext");
  void* object = nullptr;
  if (context == nullptr || FAILED(context(IID_IDispatch, &object))) return nullptr;
  return LateObjectOf(Dispatch(static_cast<IDispatch*>(object)));
}

}  // namespace quorvale::windows
