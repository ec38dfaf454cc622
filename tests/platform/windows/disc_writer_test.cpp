#include "platform/windows/disc_writer.h"

#include <gtest/gtest.h>
#include <ocidl.h>

#include <map>

#include "platform/windows/automation.h"
#include "platform/windows/text_calls.h"

#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // the system's interfaces have none

namespace quorvale::windows {
namespace {

// The events of the object that writes a disc, as the interface's public reference has them.
constexpr IID kDataEvents = {
    0x2735413C, 0x7F64, 0x5B0F, {0x8F, 0x00, 0x5D, 0x77, 0xAF, 0xBE, 0x26, 0x1E}};

// An automation object whose members are functions: a property is read with no argument and set
// with one. What is not there is refused. Lives as long as the test's computer.
using Arguments = std::vector<VARIANT>;
using Member = std::function<HRESULT(const Arguments& arguments, VARIANT* result)>;

class Fake : public IDispatch, public IConnectionPointContainer, public IConnectionPoint {
 public:
  virtual ~Fake() = default;
  std::map<std::wstring, Member> members;
  bool has_events = false;
  IUnknown* listener = nullptr;
  int references = 1;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID kind, void** object) override {
    if (IsEqualIID(kind, IID_IUnknown) || IsEqualIID(kind, IID_IDispatch)) {
      *object = static_cast<IDispatch*>(this);
    } else if (has_events && IsEqualIID(kind, IID_IConnectionPointContainer)) {
      *object = static_cast<IConnectionPointContainer*>(this);
    } else {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
  ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, OLECHAR** names, UINT, LCID,
                                          DISPID* id) override {
    DISPID number = 1;
    for (const auto& [name, member] : members) {
      *id = number++;
      if (name == *names) return S_OK;
    }
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override {
    if ((kind & DISPATCH_PROPERTYPUTREF) != 0) return DISP_E_MEMBERNOTFOUND;
    const Arguments arguments(std::make_reverse_iterator(parameters->rgvarg + parameters->cArgs),
                              std::make_reverse_iterator(parameters->rgvarg));
    return std::next(members.begin(), id - 1)->second(arguments, result);
  }

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID kind, IConnectionPoint** point) override {
    if (!IsEqualIID(kind, kDataEvents)) return E_NOINTERFACE;
    AddRef();
    *point = this;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
    listener = sink;
    *cookie = 7;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
    EXPECT_EQ(cookie, 7u);
    listener = nullptr;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }
};

HRESULT GiveNumber(VARIANT* result, int number) {
  result->vt = VT_I4;
  result->lVal = number;
  return S_OK;
}

HRESULT GiveTruth(VARIANT* result, bool truth) {
  result->vt = VT_BOOL;
  result->boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

HRESULT GiveText(VARIANT* result, const wchar_t* text) {
  result->vt = VT_BSTR;
  result->bstrVal = SysAllocString(text);
  return S_OK;
}

HRESULT GiveObject(VARIANT* result, Fake& object) {
  result->vt = VT_DISPATCH;
  result->pdispVal = &object;
  object.AddRef();
  return S_OK;
}

// A computer with one recorder, by the names of the system's objects.
class DiscObjects : public testing::Test {
 protected:
  DiscObjects() {
    by_name_ = {{"IMAPI2.MsftDiscMaster2", &master_},
                {"IMAPI2.MsftDiscRecorder2", &recorder_},
                {"IMAPI2.MsftDiscFormat2Data", &format_},
                {"IMAPI2FS.MsftFileSystemImage", &image_}};
    for (const auto& [name, object] : by_name_) made_[name] = 0;
    MakeRecorder();
    MakeFormat();
    MakeImage();
    wchar_t folder[MAX_PATH], file[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"qvl", 0, file);
    path_ = FromWide(file);
    const HANDLE opened = CreateFileW(file, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(opened, "the part", 8, &written, nullptr);
    CloseHandle(opened);
  }
  ~DiscObjects() override { DeleteFileW(Wide(path_).c_str()); }

  void MakeRecorder() {
    master_.members[L"Count"] = [](const Arguments&, VARIANT* result) {
      return GiveNumber(result, 1);
    };
    master_.members[L"Item"] = [](const Arguments& arguments, VARIANT* result) {
      return arguments.at(0).lVal == 0 ? GiveText(result, L"recorder-0") : E_INVALIDARG;
    };
    recorder_.members[L"InitializeDiscRecorder"] = [this](const Arguments& arguments, VARIANT*) {
      return std::wstring(arguments.at(0).bstrVal) == L"recorder-0" && recorder_works_ ? S_OK
                                                                                       : E_FAIL;
    };
    recorder_.members[L"VendorId"] = [](const Arguments&, VARIANT* result) {
      return GiveText(result, L"MAKER   ");
    };
    recorder_.members[L"ProductId"] = [](const Arguments&, VARIANT* result) {
      return GiveText(result, L"DVD-RW 4711");
    };
    recorder_.members[L"VolumePathNames"] = [](const Arguments&, VARIANT* result) {
      SAFEARRAY* places = SafeArrayCreateVector(VT_VARIANT, 0, 1);
      VARIANT place;
      GiveText(&place, L"E:\\");
      LONG index = 0;
      SafeArrayPutElement(places, &index, &place);
      VariantClear(&place);
      result->vt = VT_ARRAY | VT_VARIANT;
      result->parray = places;
      return S_OK;
    };
    recorder_.members[L"EjectMedia"] = [this](const Arguments&, VARIANT*) {
      ++ejected_;
      return S_OK;
    };
  }
  void MakeFormat() {
    format_.has_events = true;
    const auto supported = [this](const Arguments& arguments, VARIANT* result) {
      EXPECT_EQ(arguments.at(0).pdispVal, &recorder_);
      return GiveTruth(result, supported_);
    };
    format_.members[L"IsRecorderSupported"] = supported;
    format_.members[L"IsCurrentMediaSupported"] = supported;
    format_.members[L"Recorder"] = [this](const Arguments& arguments, VARIANT*) {
      return arguments.size() == 1 && arguments[0].pdispVal == &recorder_ ? S_OK : E_FAIL;
    };
    format_.members[L"CurrentPhysicalMediaType"] = [this](const Arguments&, VARIANT* result) {
      return medium_ ? GiveNumber(result, 2) : E_FAIL;
    };
    format_.members[L"MediaHeuristicallyBlank"] = [this](const Arguments&, VARIANT* result) {
      return medium_ ? GiveTruth(result, blank_) : E_FAIL;
    };
    format_.members[L"FreeSectorsOnMedia"] = [](const Arguments&, VARIANT* result) {
      return GiveNumber(result, 359849);
    };
    format_.members[L"ClientName"] = [](const Arguments&, VARIANT*) { return S_OK; };
    format_.members[L"ForceMediaToBeClosed"] = [this](const Arguments& arguments, VARIANT*) {
      closes_ = arguments.at(0).boolVal != VARIANT_FALSE;
      return S_OK;
    };
    format_.members[L"CancelWrite"] = [this](const Arguments&, VARIANT*) {
      cancelled_ = true;
      return S_OK;
    };
    format_.members[L"Write"] = [this](const Arguments& arguments, VARIANT*) {
      EXPECT_EQ(arguments.at(0).punkVal, static_cast<IDispatch*>(&stream_));
      return WriteDisc();
    };
    progress_.members[L"StartLba"] = [](const Arguments&, VARIANT* result) {
      return GiveNumber(result, 100);
    };
    progress_.members[L"LastWrittenLba"] = [this](const Arguments&, VARIANT* result) {
      return GiveNumber(result, 100 + written_);
    };
    progress_.members[L"SectorCount"] = [](const Arguments&, VARIANT* result) {
      return GiveNumber(result, 40);
    };
  }
  void MakeImage() {
    image_.members[L"ChooseImageDefaults"] = [](const Arguments&, VARIANT*) { return S_OK; };
    image_.members[L"FileSystemsToCreate"] = [this](const Arguments& arguments, VARIANT*) {
      file_systems_ = arguments.at(0).lVal;
      return S_OK;
    };
    image_.members[L"VolumeName"] = [](const Arguments&, VARIANT*) { return S_OK; };
    image_.members[L"Root"] = [this](const Arguments&, VARIANT* result) {
      return GiveObject(result, root_);
    };
    root_.members[L"AddFile"] = [this](const Arguments& arguments, VARIANT*) {
      added_ = arguments.at(0).bstrVal;
      void* stream = nullptr;
      if (FAILED(arguments.at(1).punkVal->QueryInterface(IID_IStream, &stream))) return E_FAIL;
      char bytes[32] = {};
      ULONG count = 0;
      static_cast<IStream*>(stream)->Read(bytes, sizeof(bytes), &count);
      static_cast<IStream*>(stream)->Release();
      content_.assign(bytes, count);
      return S_OK;
    };
    image_.members[L"CreateResultImage"] = [this](const Arguments&, VARIANT* result) {
      return GiveObject(result, result_);
    };
    result_.members[L"TotalBlocks"] = [](const Arguments&, VARIANT* result) {
      return GiveNumber(result, 40);
    };
    result_.members[L"ImageStream"] = [this](const Arguments&, VARIANT* result) {
      result->vt = VT_UNKNOWN;
      result->punkVal = static_cast<IDispatch*>(&stream_);
      stream_.AddRef();
      return S_OK;
    };
  }
  // What the system does while it writes: it tells how far it is, and listens for the cancel.
  HRESULT WriteDisc() {
    for (written_ = 0; written_ <= 40; written_ += 10) {
      if (format_.listener != nullptr) {
        void* found = nullptr;
        EXPECT_EQ(format_.listener->QueryInterface(IID_IDispatch, &found), S_OK);
        IDispatch* events = static_cast<IDispatch*>(found);
        VARIANT values[2];  // in reverse order
        GiveObject(&values[0], progress_);
        GiveObject(&values[1], format_);
        DISPPARAMS parameters = {values, nullptr, 2, 0};
        events->Invoke(0x200, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                       nullptr, nullptr);
        events->Release();
        for (VARIANT& value : values) VariantClear(&value);
      }
      if (cancelled_) return E_ABORT;
      Sleep(120);
    }
    return write_result_;
  }

  IDispatch* Make(const std::string& name) {
    const auto object = by_name_.find(name);
    if (object == by_name_.end() || missing_ == name) return nullptr;
    ++made_[name];
    object->second->AddRef();
    return object->second;
  }
  bool Burn(const std::string& path) {
    return discs_.Burn(path, "Job.obk",
                       {.file_added = [this] { told_ += "added "; },
                        .write_started = [this] { told_ += "started "; },
                        .progress =
                            [this](std::uint64_t done, std::uint64_t total) {
                              steps_.push_back(static_cast<int>(done));
                              EXPECT_EQ(total, 40u);
                            },
                        .keep_going = [this] { return !stop_at_ || steps_.size() < stop_at_; }});
  }

  const ComponentLibrary library_;
  Fake master_, recorder_, format_, image_, root_, result_, stream_, progress_;
  std::map<std::string, Fake*> by_name_;
  std::map<std::string, int> made_;
  std::string missing_;
  bool recorder_works_ = true, supported_ = true, medium_ = true, blank_ = true;
  bool closes_ = false, cancelled_ = false;
  HRESULT write_result_ = S_OK;
  int ejected_ = 0, written_ = 0;
  LONG file_systems_ = 0;
  std::wstring added_;
  std::string content_, told_, path_;
  std::vector<int> steps_;
  size_t stop_at_ = 0;
  WindowsDiscWriter discs_{[this](const std::string& name) { return Make(name); }};
};

TEST_F(DiscObjects, ADriveHasItsLetterMakerAndModel) {
  EXPECT_TRUE(discs_.Initialise());
  const std::vector<DiscDrive> drives = discs_.Drives();
  ASSERT_EQ(drives.size(), 1u);
  EXPECT_TRUE(drives[0].can_write);
  EXPECT_EQ(drives[0].place + ": " + drives[0].maker + " " + drives[0].model,
            "E: MAKER DVD-RW 4711");
  supported_ = false;
  EXPECT_FALSE(discs_.Drives().at(0).can_write);
}

TEST_F(DiscObjects, ADriveThatDoesNotAnswerIsListedAsNoWriter) {
  recorder_works_ = false;
  ASSERT_EQ(discs_.Drives().size(), 1u);
  EXPECT_FALSE(discs_.Drives()[0].can_write);
  EXPECT_FALSE(discs_.Open(0));
}

TEST_F(DiscObjects, WithoutTheSystemsObjectsThereIsNothing) {
  missing_ = "IMAPI2.MsftDiscMaster2";
  EXPECT_FALSE(discs_.Initialise());
  EXPECT_TRUE(discs_.Drives().empty());
  EXPECT_FALSE(discs_.Open(0));
  EXPECT_FALSE(discs_.MediumLoaded());
  EXPECT_EQ(discs_.FreeBytes(), 0u);
  EXPECT_FALSE(Burn(path_));
  discs_.Eject();
  EXPECT_EQ(ejected_, 0);
}

TEST_F(DiscObjects, TheRoomIsThatOfABlankMedium) {
  EXPECT_FALSE(discs_.MediumLoaded());  // no drive is open yet
  EXPECT_FALSE(discs_.Open(1));
  ASSERT_TRUE(discs_.Open(0));
  EXPECT_TRUE(discs_.MediumLoaded());
  EXPECT_EQ(discs_.FreeBytes(), 359849u * 2048);
  blank_ = false;
  EXPECT_TRUE(discs_.MediumLoaded());
  EXPECT_EQ(discs_.FreeBytes(), 0u);
  medium_ = false;
  EXPECT_FALSE(discs_.MediumLoaded());
  EXPECT_EQ(discs_.FreeBytes(), 0u);
}

TEST_F(DiscObjects, AFileIsWrittenUnderItsNameWithProgress) {
  ASSERT_TRUE(discs_.Open(0));
  EXPECT_TRUE(Burn(path_));
  EXPECT_EQ(added_, L"Job.obk");
  EXPECT_EQ(content_, "the part");
  EXPECT_EQ(file_systems_, 3);
  EXPECT_TRUE(closes_);
  EXPECT_EQ(told_, "added started ");
  ASSERT_GE(steps_.size(), 3u);
  EXPECT_TRUE(std::is_sorted(steps_.begin(), steps_.end()));
  EXPECT_EQ(steps_.back(), 40);
  EXPECT_EQ(format_.listener, nullptr);  // nobody listens any more
  discs_.Eject();
  EXPECT_EQ(ejected_, 1);
}

TEST_F(DiscObjects, EveryReferenceIsGivenBack) {
  ASSERT_TRUE(discs_.Open(0));
  ASSERT_TRUE(Burn(path_));
  discs_.Drives();
  discs_.FreeBytes();
  for (Fake* object :
       {&master_, &recorder_, &format_, &image_, &root_, &result_, &stream_, &progress_}) {
    EXPECT_EQ(object->references, 1);
  }
}

TEST_F(DiscObjects, ABurnIsCancelledWhereItsUserGivesUp) {
  ASSERT_TRUE(discs_.Open(0));
  stop_at_ = 1;
  EXPECT_FALSE(Burn(path_));
  EXPECT_TRUE(cancelled_);
}

TEST_F(DiscObjects, AnObjectWithoutEventsWritesAllTheSame) {
  format_.has_events = false;
  ASSERT_TRUE(discs_.Open(0));
  EXPECT_TRUE(Burn(path_));
  EXPECT_TRUE(steps_.empty());
}

TEST_F(DiscObjects, AFailedWriteAndAMissingFileAreTold) {
  ASSERT_TRUE(discs_.Open(0));
  write_result_ = E_FAIL;
  EXPECT_FALSE(Burn(path_));
  write_result_ = S_OK;
  EXPECT_FALSE(Burn("C:\\no such file.obk"));
  missing_ = "IMAPI2FS.MsftFileSystemImage";
  EXPECT_FALSE(Burn(path_));
}

TEST(SystemDiscObjects, WineHasNone) {
  const ComponentLibrary library;
  WindowsDiscWriter discs;
  EXPECT_EQ(MakeSystemObject("No.Such.Object"), nullptr);
  EXPECT_FALSE(discs.Initialise());
  EXPECT_TRUE(discs.Drives().empty());
  EXPECT_FALSE(discs.Open(0));
}

}  // namespace
}  // namespace quorvale::windows
