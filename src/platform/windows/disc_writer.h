// Disc writers on the running system, by its own disc-burning objects (version 2 of the system's
// image mastering interface: part of Windows Vista, an update of Windows XP). They are reached by
// their names at run time, so that the program starts where they are missing. The names, numbers
// and event identifier are those of the interface's public reference.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/disc_writer.h"
#include "platform/windows/dispatch.h"

namespace quorvale::windows {

// Makes one of the system's objects by its name, such as "IMAPI2.MsftDiscMaster2". The caller
// releases it. Null if there is none. Called on the thread that uses the object.
using ObjectMaker = std::function<IDispatch*(const std::string& name)>;

class WindowsDiscWriter : public DiscWriter {
 public:
  explicit WindowsDiscWriter(ObjectMaker make = MakeSystemObject) : make_(std::move(make)) {}

  bool Initialise() override;
  std::vector<DiscDrive> Drives() override;
  bool Open(int index) override;
  bool MediumLoaded() override;
  std::uint64_t FreeBytes() override;
  bool Burn(const std::string& path, const std::string& name, const DiscEvents& events) override;
  void Eject() override;

 private:
  // The system's identifiers of its recorders.
  std::vector<std::wstring> RecorderIds();

  ObjectMaker make_;
  std::wstring recorder_;  // the opened one's identifier; "" for none
};

}  // namespace quorvale::windows
