#include "platform/host/host_platform.h"

namespace quorvale::host {

std::unique_ptr<HostPlatform> HostPlatform::Open(const std::string& machine_folder,
                                                 MachineError* error) {
  const auto machine = ReadMachineFolder(machine_folder, error);
  if (!machine) return nullptr;
  auto code_page = CodePage::Open(machine->codepage);
  if (!code_page) {
    *error = {machine->path + "/machine.ini", machine->codepage_line,
              "code page " + std::to_string(machine->codepage) + " is not known here"};
    return nullptr;
  }
  std::unique_ptr<HostPlatform> platform(new HostPlatform(*machine, std::move(code_page)));
  if (!platform->registry_.Load(error)) return nullptr;
  if (!platform->scheduler_.Check(error)) return nullptr;
  return platform;
}

HostPlatform::HostPlatform(const MachineFolder& machine, std::unique_ptr<CodePage> code_page)
    : code_page_(std::move(code_page)),
      registry_(machine.path, *code_page_),
      files_(machine),
      system_(machine, *code_page_),
      shell_(machine, registry_, files_, system_),
      processes_(machine.processes),
      services_(machine.services),
      ftp_(files_),
      discs_(machine, files_),
      scheduler_(machine.path, system_) {}

Platform HostPlatform::Bundle(ui::Ui& ui) {
  return Platform{registry_, files_, shell_,     system_,  processes_, services_,
                  ftp_,      discs_, scheduler_, threads_, ui};
}

bool HostPlatform::Flush(std::string* error) {
  shell_.FinishRuns();
  return registry_.Flush(error);
}

}  // namespace quorvale::host
