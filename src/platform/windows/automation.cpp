#include "platform/windows/automation.h"

#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr int kForwardOnlyAndImmediately = 48;

}  // namespace

ComponentLibrary::ComponentLibrary() : started_(SUCCEEDED(OleInitialize(nullptr))) {}

ComponentLibrary::~ComponentLibrary() {
  if (started_) OleUninitialize();
}

void QueryManagement(const std::string& query, const std::function<bool(Dispatch&)>& visit) {
  Dispatch service = Dispatch::FromMoniker("winmgmts:\\\\.\\root\\cimv2");
  Variant answer;
  service.Call("ExecQuery",
               Arguments(Variant(Wide(query)), Variant(std::wstring(L"WQL")),
                         Variant(kForwardOnlyAndImmediately)),
               &answer);
  Dispatch::Of(answer.Object()).ForEach([&](Variant& member) {
    Dispatch row = Dispatch::Of(member.Object());
    return !row || visit(row);
  });
}

}  // namespace quorvale::windows
