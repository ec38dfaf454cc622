#include "platform/windows/disc_writer.h"

#include <process.h>

#include "base/text.h"
#include "platform/windows/automation.h"
#include "platform/windows/disc_burn.h"
#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr double kBlock = 2048;  // bytes
constexpr DWORD kPause = 50;     // milliseconds between two looks at a disc being written

// What a question answers about a recorder; false also where it gives no answer.
bool IsTrueOf(Dispatch& format, const char* question, const Dispatch& recorder) {
  Variant answer;
  return format.Call(question, Arguments(Variant(recorder.get())), &answer) && answer.Truth();
}

// "E" of a recorder whose first place is "E:\"; its place as it is told otherwise.
std::string PlaceOf(Dispatch& recorder) {
  Variant places;
  if (!recorder.Get("VolumePathNames", &places)) return "";
  const VARIANT& value = *places.get();
  if ((value.vt & VT_ARRAY) == 0 || value.parray == nullptr) return "";
  Variant first;
  LONG index = 0;
  SafeArrayGetLBound(value.parray, 1, &index);
  const bool texts = (value.vt & VT_TYPEMASK) == VT_BSTR;
  void* target = first.get();
  if (texts) {
    first.get()->vt = VT_BSTR;
    first.get()->bstrVal = nullptr;
    target = &first.get()->bstrVal;
  }
  if (FAILED(SafeArrayGetElement(value.parray, &index, target))) return "";
  const std::string place = FromWide(first.Text());
  return place.size() == 3 && place.ends_with(":\\") ? place.substr(0, 1) : place;
}

std::string TextOf(Dispatch& recorder, const char* property) {
  return Trim(recorder.Text(property).value_or(""));
}

unsigned __stdcall RunBurn(void* job) {
  const ComponentLibrary library;
  BurnDisc(*static_cast<BurnJob*>(job));
  return 0;
}

// Tells what the thread has come to since the last look.
class BurnNews {
 public:
  BurnNews(BurnJob& job, const DiscEvents& events) : job_(job), events_(events) {}
  void Tell() {
    const BurnStage stage = job_.stage;
    if (stage >= BurnStage::kFileAdded && told_ < BurnStage::kFileAdded && events_.file_added) {
      events_.file_added();
    }
    if (stage >= BurnStage::kWriting && told_ < BurnStage::kWriting && events_.write_started) {
      events_.write_started();
    }
    told_ = stage;
    const unsigned done = job_.done, total = job_.total;
    if (stage < BurnStage::kWriting || done == done_ || !events_.progress) return;
    done_ = done;
    events_.progress(done, total);
  }

 private:
  BurnJob& job_;
  const DiscEvents& events_;
  BurnStage told_ = BurnStage::kPreparing;
  unsigned done_ = 0;
};

}  // namespace

bool WindowsDiscWriter::Initialise() {
  return static_cast<bool>(Dispatch(make_("IMAPI2.MsftDiscMaster2")));
}

std::vector<std::wstring> WindowsDiscWriter::RecorderIds() {
  std::vector<std::wstring> ids;
  Dispatch master(make_("IMAPI2.MsftDiscMaster2"));
  Variant count;
  if (!master.Get("Count", &count)) return ids;
  for (int i = 0; i < static_cast<int>(count.Number()); ++i) {
    Variant id;
    master.Call("Item", Arguments(Variant(i)), &id);
    ids.push_back(id.Text());
  }
  return ids;
}

std::vector<DiscDrive> WindowsDiscWriter::Drives() {
  std::vector<DiscDrive> drives;
  Dispatch format(make_("IMAPI2.MsftDiscFormat2Data"));
  for (const std::wstring& id : RecorderIds()) {
    DiscDrive drive;
    drive.index = static_cast<int>(drives.size());
    if (Dispatch recorder = OpenRecorder(make_, id)) {
      drive.can_write = IsTrueOf(format, "IsRecorderSupported", recorder);
      drive.place = PlaceOf(recorder);
      drive.maker = TextOf(recorder, "VendorId");
      drive.model = TextOf(recorder, "ProductId");
    }
    drives.push_back(std::move(drive));
  }
  return drives;
}

bool WindowsDiscWriter::Open(int index) {
  recorder_.clear();
  const std::vector<std::wstring> ids = RecorderIds();
  if (index < 0 || index >= static_cast<int>(ids.size())) return false;
  const std::wstring& id = ids[static_cast<size_t>(index)];
  const Dispatch recorder = OpenRecorder(make_, id);
  Dispatch format(make_("IMAPI2.MsftDiscFormat2Data"));
  if (!recorder || !IsTrueOf(format, "IsRecorderSupported", recorder)) return false;
  recorder_ = id;
  return true;
}

bool WindowsDiscWriter::MediumLoaded() {
  if (recorder_.empty()) return false;
  const Dispatch recorder = OpenRecorder(make_, recorder_);
  Dispatch format(make_("IMAPI2.MsftDiscFormat2Data"));
  Variant kind;
  return recorder && format.Put("Recorder", Variant(recorder.get())) &&
         format.Get("CurrentPhysicalMediaType", &kind);
}

std::uint64_t WindowsDiscWriter::FreeBytes() {
  if (recorder_.empty()) return 0;
  const Dispatch recorder = OpenRecorder(make_, recorder_);
  Dispatch format(make_("IMAPI2.MsftDiscFormat2Data"));
  if (!recorder || !IsTrueOf(format, "IsCurrentMediaSupported", recorder) ||
      !format.Put("Recorder", Variant(recorder.get()))) {
    return 0;
  }
  // What has something on it already is left as it is.
  Variant blank, blocks;
  if (!format.Get("MediaHeuristicallyBlank", &blank) || !blank.Truth() ||
      !format.Get("FreeSectorsOnMedia", &blocks) || blocks.Number() < 0) {
    return 0;
  }
  return static_cast<std::uint64_t>(blocks.Number() * kBlock);
}

bool WindowsDiscWriter::Burn(const std::string& path, const std::string& name,
                             const DiscEvents& events) {
  if (recorder_.empty()) return false;
  BurnJob job;
  job.make = make_;
  job.recorder = recorder_;
  job.path = Wide(path);
  job.name = Wide(name);
  unsigned id = 0;
  const HANDLE thread = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, RunBurn, &job, 0, &id));
  if (thread == nullptr) return false;
  BurnNews news(job, events);
  // A drive that is told to stop may need its time: the file must stay until then.
  while (WaitForSingleObject(thread, kPause) == WAIT_TIMEOUT) {
    news.Tell();
    if (events.keep_going && !events.keep_going()) job.cancel = true;
  }
  CloseHandle(thread);
  if (!job.cancel) news.Tell();
  return job.written;
}

void WindowsDiscWriter::Eject() {
  if (recorder_.empty()) return;
  OpenRecorder(make_, recorder_).Call("EjectMedia", {});
}

}  // namespace quorvale::windows
