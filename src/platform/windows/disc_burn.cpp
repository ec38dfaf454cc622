#include "platform/windows/disc_burn.h"

#include <ocidl.h>

#include <algorithm>

#include "platform/windows/text_calls.h"

namespace quorvale::windows {
namespace {

constexpr int kIsoAndJoliet = 3;
constexpr wchar_t kVolumeName[] = L"BACKUP";
constexpr wchar_t kClientName[] = L"Quorvale";
constexpr DISPID kUpdate = 0x200;

// The events of the object that writes: one method, called directly or late-bound.
constexpr IID kDataEvents = {
    0x2735413C, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};
#pragma GCC diagnostic push
// The system's interfaces have no virtual destructor, and none is ever called through them.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
struct DataEvents : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE Update(IDispatch* writer, IDispatch* progress) = 0;

 protected:
  ~DataEvents() = default;
};

// Hears the events. Lives on its thread's stack for as long as it is connected, so that the count
// of references decides nothing.
class BurnListener final : public DataEvents {
 public:
  explicit BurnListener(BurnJob& job) : job_(job) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID kind, void** object) override {
    const bool known = IsEqualIID(kind, IID_IUnknown) || IsEqualIID(kind, IID_IDispatch) ||
                       IsEqualIID(kind, kDataEvents);
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    if (id != kUpdate || parameters == nullptr || parameters->cArgs != 2) return S_OK;
    const VARIANT& progress = parameters->rgvarg[0];
    const VARIANT& writer = parameters->rgvarg[1];
    if (progress.vt != VT_DISPATCH || writer.vt != VT_DISPATCH) return S_OK;
    return Update(writer.pdispVal, progress.pdispVal);
  }

  HRESULT STDMETHODCALLTYPE Update(IDispatch* writer, IDispatch* progress) override {
    Dispatch facts = Dispatch::Of(progress);
    Variant start, last, count;
    if (facts.Get("StartLba", &start) && facts.Get("LastWrittenLba", &last) &&
        facts.Get("SectorCount", &count)) {
      job_.total = static_cast<unsigned>(std::max(count.Number(), 0.0));
      job_.done = static_cast<unsigned>(std::max(last.Number() - start.Number(), 0.0));
    }
    if (job_.cancel) Dispatch::Of(writer).Call("CancelWrite", {});
    return S_OK;
  }

 private:
  BurnJob& job_;
};

#pragma GCC diagnostic pop

// Connects a listener for as long as it lives. Where that cannot be, the disc is written without
// news of it.
class Connection {
 public:
  Connection(IUnknown* source, BurnListener& listener) {
    void* container = nullptr;
    if (FAILED(source->QueryInterface(IID_IConnectionPointContainer, &container))) return;
    auto* points = static_cast<IConnectionPointContainer*>(container);
    if (FAILED(points->FindConnectionPoint(kDataEvents, &point_))) point_ = nullptr;
    points->Release();
    if (point_ != nullptr && FAILED(point_->Advise(&listener, &cookie_))) cookie_ = 0;
  }
  ~Connection() {
    if (point_ == nullptr) return;
    if (cookie_ != 0) point_->Unadvise(cookie_);
    point_->Release();
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

 private:
  IConnectionPoint* point_ = nullptr;
  DWORD cookie_ = 0;
};

// A file as a stream of the system; empty if it cannot be opened.
Variant StreamOf(const std::wstring& path) {
  using StreamCall = HRESULT(WINAPI*)(LPCWSTR, DWORD, IStream**);
  const auto open = LookUp<StreamCall>("shlwapi.dll", "SHCreateStreamOnFileW");
  IStream* stream = nullptr;
  if (open == nullptr || FAILED(open(path.c_str(), STGM_READ | STGM_SHARE_DENY_WRITE, &stream))) {
    return Variant();
  }
  Variant value(static_cast<IUnknown*>(stream));
  stream->Release();
  return value;
}

// The image of a disc with the one file; a stream. Empty if it cannot be made.
Variant MakeImage(BurnJob& job, Dispatch& recorder) {
  Dispatch image(job.make("IMAPI2FS.MsftFileSystemImage"));
  if (!image.Call("ChooseImageDefaults", Arguments(Variant(recorder.get())))) return Variant();
  image.Put("FileSystemsToCreate", Variant(kIsoAndJoliet));
  image.Put("VolumeName", Variant(std::wstring(kVolumeName)));
  Variant file = StreamOf(job.path);
  if (file.Object() == nullptr) return Variant();
  Dispatch root = image.GetObject("Root");
  if (!root.Call("AddFile", Arguments(Variant(job.name), std::move(file)))) return Variant();
  job.stage = BurnStage::kFileAdded;
  Variant made;
  if (!image.Call("CreateResultImage", {}, &made)) return Variant();
  Variant stream, blocks;
  Dispatch result = Dispatch::Of(made.Object());
  if (result.Get("TotalBlocks", &blocks)) {
    job.total = static_cast<unsigned>(std::max(blocks.Number(), 0.0));
  }
  return result.Get("ImageStream", &stream) ? std::move(stream) : Variant();
}

}  // namespace

Dispatch OpenRecorder(const ObjectMaker& make, const std::wstring& id) {
  Dispatch recorder(make("IMAPI2.MsftDiscRecorder2"));
  return recorder.Call("InitializeDiscRecorder", Arguments(Variant(id))) ? std::move(recorder)
                                                                         : Dispatch();
}

void BurnDisc(BurnJob& job) {
  Dispatch recorder = OpenRecorder(job.make, job.recorder);
  if (!recorder) return;
  Variant image = MakeImage(job, recorder);
  Dispatch writer(job.make("IMAPI2.MsftDiscFormat2Data"));
  if (image.Object() == nullptr || job.cancel || !writer.Put("Recorder", Variant(recorder.get()))) {
    return;
  }
  writer.Put("ClientName", Variant(std::wstring(kClientName)));
  writer.Put("ForceMediaToBeClosed", Variant(true));
  BurnListener listener(job);
  const Connection connection(writer.get(), listener);
  job.stage = BurnStage::kWriting;
  job.written = writer.Call("Write", Arguments(std::move(image))) && !job.cancel;
}

}  // namespace quorvale::windows
