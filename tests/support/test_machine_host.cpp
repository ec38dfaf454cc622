#include <gtest/gtest.h>

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "platform/host/host_platform.h"
#include "platform/registry_text.h"
#include "play/new_machine.h"
#include "play/running_machine.h"
#include "support/temp_folder.h"
#include "support/test_machine.h"

namespace quorvale {
struct TestMachine::Parts {
  TempFolder folder;
  MachineLayout layout;
  std::unique_ptr<FaultyPlatform> faults;  // goes after the program, which sees through it
  std::unique_ptr<RunningMachine> computer;
};

TestMachine::TestMachine(const std::string& like, const std::string& user)
    : parts_(std::make_unique<Parts>()) {
  MachinePlan plan;
  plan.like = like;
  plan.user = user;
  plan.mail_program_started = false;
  const std::optional<MachineLayout> layout = LayoutOf(like, user);
  std::string problem = MakeMachine(parts_->folder.path(), plan);
  if (problem.empty()) parts_->computer = RunningMachine::Open(parts_->folder.path(), &problem);
  if (!parts_->computer || !layout) {
    ADD_FAILURE() << problem;
    std::abort();  // no test can go on without its computer
  }
  parts_->layout = *layout;
  parts_->faults = std::make_unique<FaultyPlatform>(parts_->computer->platform());
  parts_->computer->ShowThrough(parts_->faults->platform());
}

TestMachine::~TestMachine() {
  for (const std::string& sentence : ui().failures) ADD_FAILURE() << sentence;
  for (const std::string& text : ui().ExpectedBoxes()) {
    ADD_FAILURE() << "this message box never came: " << text;
  }
}

Application& TestMachine::app() {
  if (parts_->computer->app() == nullptr) {
    parts_->computer->MakeProgram(platform().system.CommandLine());
  }
  return *parts_->computer->app();
}

ui::HeadlessUi& TestMachine::ui() { return parts_->computer->ui(); }
Platform& TestMachine::platform() { return parts_->computer->platform(); }
RunningMachine& TestMachine::computer() { return *parts_->computer; }
FaultyPlatform& TestMachine::faults() { return *parts_->faults; }
host::HostPlatform& TestMachine::host() { return parts_->computer->host(); }
const std::string& TestMachine::folder() const { return parts_->folder.path(); }

void TestMachine::Restart(const std::string& command_line) {
  EXPECT_EQ(parts_->computer->EndProgram(), "");
  parts_->computer->MakeProgram(command_line);
}

std::string TestMachine::Profile() const { return parts_->layout.profile; }
std::string TestMachine::AppData() const { return parts_->layout.app_data; }
std::string TestMachine::LocalAppData() const { return parts_->layout.local_app_data; }
std::string TestMachine::Documents() const { return parts_->layout.documents; }
std::string TestMachine::Desktop() const { return parts_->layout.desktop; }
std::string TestMachine::Favorites() const { return parts_->layout.favorites; }
std::string TestMachine::Cookies() const { return parts_->layout.cookies; }
std::string TestMachine::CommonFiles() const { return parts_->layout.common_files; }

void TestMachine::WriteFile(const std::string& path, const std::string& bytes) {
  FileToolkit toolkit(files(), [] {});
  MakeFolder(ParentFolder(path));
  EXPECT_EQ(toolkit.WriteWhole(path, bytes), FileStatus::kOk) << path;
}

void TestMachine::MakeFolder(const std::string& path) {
  FileToolkit toolkit(files(), [] {});
  EXPECT_TRUE(toolkit.MakeFolderChain(path)) << path;
}

std::string TestMachine::ReadFile(const std::string& path) {
  FileToolkit toolkit(files(), [] {});
  const std::optional<std::string> bytes = toolkit.ReadWhole(path, std::uint64_t{1} << 32);
  if (!bytes) ADD_FAILURE() << "there is no file " << path;
  return bytes.value_or("");
}

bool TestMachine::Exists(const std::string& path) { return files().Stat(path).has_value(); }

void TestMachine::RemoveFile(const std::string& path) {
  EXPECT_EQ(files().RemoveFile(path, true), FileStatus::kOk) << path;
}

void TestMachine::RemoveTree(const std::string& path) {
  FileToolkit toolkit(files(), [] {});
  EXPECT_TRUE(toolkit.KillFolder(path)) << path;
}

void TestMachine::SetAttributes(const std::string& path, std::uint32_t attributes) {
  EXPECT_EQ(files().SetAttributes(path, attributes), FileStatus::kOk) << path;
}

void TestMachine::SetModified(const std::string& path, FileTime modified) {
  EXPECT_EQ(files().SetModified(path, modified), FileStatus::kOk) << path;
}

std::vector<std::string> TestMachine::AllBelow(const std::string& folder) {
  std::vector<std::string> paths;
  for (const FileInfo& info : files().List(folder)) {
    const std::string path = WithBackslash(folder) + info.name;
    paths.push_back(info.IsFolder() ? path + "\\" : path);
    if (!info.IsFolder()) continue;
    for (std::string& inner : AllBelow(path)) paths.push_back(std::move(inner));
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string TestMachine::HostPath(const std::string& path) const {
  return parts_->computer->host().files().HostPath(path);
}

namespace {

RegistryPath KeyOf(const std::string& key) {
  const std::optional<RegistryPath> path = ParseRegistryPath(key);
  if (!path) ADD_FAILURE() << key << " is no registry key";
  return path.value_or(RegistryPath{RegistryRoot::kCurrentUser, "No key"});
}

void StoreValue(RegistryStore& registry, const std::string& key, const std::string& name,
                std::uint32_t type, const std::string& data) {
  const RegistryPath path = KeyOf(key);
  EXPECT_EQ(registry.CreateKey(path.root, path.subkey), registry_status::kOk) << key;
  EXPECT_EQ(registry.SetValue(path.root, path.subkey, name, type, data), registry_status::kOk)
      << key << "\\" << name;
}

void StoreText(RegistryStore& registry, const std::string& key, const std::string& name,
               std::uint32_t type, const std::string& text) {
  const RegistryPath path = KeyOf(key);
  EXPECT_EQ(registry.CreateKey(path.root, path.subkey), registry_status::kOk) << key;
  EXPECT_EQ(registry.SetText(path.root, path.subkey, name, type, text), registry_status::kOk)
      << key << "\\" << name;
}

}  // namespace

void TestMachine::MakeKey(const std::string& key) {
  const RegistryPath path = KeyOf(key);
  EXPECT_EQ(registry().CreateKey(path.root, path.subkey), registry_status::kOk) << key;
}

void TestMachine::SetString(const std::string& key, const std::string& name,
                            const std::string& text) {
  StoreText(registry(), key, name, registry_type::kString, text);
}

void TestMachine::SetExpandString(const std::string& key, const std::string& name,
                                  const std::string& text) {
  StoreText(registry(), key, name, registry_type::kExpandString, text);
}

void TestMachine::SetDword(const std::string& key, const std::string& name, std::uint32_t number) {
  std::string data;
  for (int i = 0; i < 4; ++i) data += static_cast<char>(number >> (8 * i) & 0xFF);
  StoreValue(registry(), key, name, registry_type::kDword, data);
}

void TestMachine::SetBinary(const std::string& key, const std::string& name,
                            const std::string& bytes) {
  StoreValue(registry(), key, name, registry_type::kBinary, bytes);
}

std::optional<std::string> TestMachine::GetValue(const std::string& key, const std::string& name) {
  const RegistryPath path = KeyOf(key);
  RegistryValue value;
  if (registry().QueryValue(path.root, path.subkey, name, &value) != registry_status::kOk) {
    return std::nullopt;
  }
  if (!registry_type::IsText(value.type)) return value.data;
  std::string text;
  registry().QueryText(path.root, path.subkey, name, &text);
  while (!text.empty() && text.back() == '\0') text.pop_back();
  return text;
}

bool TestMachine::KeyExists(const std::string& key) {
  const RegistryPath path = KeyOf(key);
  return registry().KeyExists(path.root, path.subkey);
}

void TestMachine::SetUser(const std::string& name) { host().system().SetUser(name); }

void TestMachine::SetService(const std::string& name, const std::string& state) {
  host().services().SetState(name, state);
}

std::vector<std::string> TestMachine::Boxes() {
  std::vector<std::string> texts;
  for (const ui::HeadlessUi::ShownBox& box : ui().boxes) texts.push_back(box.request.text);
  return texts;
}

std::vector<std::string> TestMachine::TakeUnexpected() { return std::exchange(ui().failures, {}); }

void TestMachine::Click(ui::Control& control) {
  ui().Step([&control] { control.Click(); });
}

void TestMachine::Tick(ui::TreeView& tree, const std::string& full_path, bool checked) {
  ui::TreeNode* node = tree.FindPath(full_path);
  if (node == nullptr) {
    ADD_FAILURE() << "there is no node " << full_path;
    return;
  }
  ui().Step([&] { tree.UserChecks(node, checked); });
}

}  // namespace quorvale
