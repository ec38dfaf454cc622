#include "backup/run/backup_plan.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "archive/entry_name.h"
#include "backup/format/lines.h"
#include "base/paths.h"
#include "base/text.h"

namespace quorvale {
namespace {

// A Zip entry's name has a length field of 16 bits.
constexpr size_t kLongestEntryName = 65535;
constexpr char kAllFiles[] = "*.*";
constexpr char kAlsoWithoutDot[] = "*";

bool CanBeEntryName(const std::string& name) {
  return name.size() <= kLongestEntryName && IsUtf8(name);
}

BackupPhase PhaseOf(const std::string& path) {
  if (path.starts_with("Windows Mail\\")) return BackupPhase::kWindowsMail;
  if (path.starts_with("Outlook Express\\")) return BackupPhase::kOutlookExpress;
  if (path.starts_with("Microsoft Outlook\\")) return BackupPhase::kOutlook;
  if (path.starts_with("Internet Explorer\\")) return BackupPhase::kBrowser;
  return BackupPhase::kOtherFiles;
}

constexpr BackupPhase kWorkPhases[] = {BackupPhase::kWindowsMail, BackupPhase::kOutlookExpress,
                                       BackupPhase::kOutlook, BackupPhase::kBrowser,
                                       BackupPhase::kOtherFiles};

class Planner {
 public:
  Planner(Program& program, const PhaseApplies& applies, const std::function<bool()>& keep_going)
      : program_(program),
        session_(program.session()),
        applies_(applies),
        keep_going_(keep_going),
        stage_(CollapseBackslashes(session_.gBackupBasePath)) {}

  BackupPlan Run() {
    ReadItems();
    for (const BackupPhase phase : kWorkPhases) {
      for (size_t i = 0; i < plan_.items.size(); ++i) {
        if (plan_.items[i].phase == phase && plan_.items[i].is_taken) PlanItem(i);
      }
    }
    NameAll();
    FillCollection();
    return std::move(plan_);
  }

 private:
  // A member whose name is not settled yet.
  struct Draft {
    size_t item;
    PlannedMember member;
    std::string source;
    std::string target;  // the path below the staging folder that its entry name is made of
    std::string entry;
    size_t shares = 0;        // with is_shared: the draft that has source and entry
    bool is_missing = false;  // takes no name from a source that is there
  };

  void ReadItems() {
    for (size_t i = 0; i < session_.gBackupItemPaths.size(); ++i) {
      PlannedItem item;
      item.path = session_.gBackupItemPaths[i];
      item.key = BackupItemKey(session_, i);
      item.phase = PhaseOf(item.path);
      const ItemEntry entry = EntryOfItem(item.path, item.key, session_.gOSName);
      item.kind = entry.kind;
      item.target = CollapseBackslashes(session_.gBackupBasePath + "\\" + entry.folder + "\\");
      item.is_taken = applies_(item.phase);
      plan_.items.push_back(std::move(item));
    }
  }

  void PlanItem(size_t number) {
    PlannedItem& item = plan_.items[number];
    switch (item.kind) {
      case ItemEntry::Kind::kNone:
        return;
      case ItemEntry::Kind::kRegistry:
        return PlanExport(number);
      case ItemEntry::Kind::kFolder:
        return PlanFolder(number);
      case ItemEntry::Kind::kFile:
        return PlanFile(number);
    }
  }

  void PlanExport(size_t number) {
    const PlannedItem& item = plan_.items[number];
    Draft draft = NewDraft(number, TableMember::Kind::kRegistry,
                           item.target + ExportFileName(FileNameOf(item.path)));
    draft.member.is_staged = true;
    if (!CanBeEntryName(draft.entry)) {
      plan_.items[number].gaps.push_back({item.key, "", gap_reason::kNoName});
      return;
    }
    drafts_.push_back(std::move(draft));
  }

  void PlanFile(size_t number) {
    PlannedItem& item = plan_.items[number];
    const std::string source = CollapseBackslashes(item.key);
    const std::optional<FileInfo> info = program_.platform().files.Stat(source);
    const bool is_file = info && !info->IsFolder();
    item.is_there = is_file;
    const bool is_mail = item.phase != BackupPhase::kOtherFiles;
    // An added file may come back until its turn comes.
    if (!is_file && is_mail) return;
    // A mail store bears the name that the folder has it under, in its letters.
    AddFile(number, source, item.target + (is_mail ? info->name : FileNameOf(source)), "",
            !is_file);
  }

  void PlanFolder(size_t number) {
    PlannedItem& item = plan_.items[number];
    if (!program_.platform().files.Stat(item.key)) {
      item.is_there = false;
      return;
    }
    const std::string folder = WithBackslash(CollapseBackslashes(item.key));
    const auto stopping = [this] { return !keep_going_(); };
    const auto passed_over = [&](const std::string& path, PassedOver why) {
      NotePassedOver(number, folder, path, why);
    };
    const char* pattern =
        program_.settings().files_without_extension() ? kAlsoWithoutDot : kAllFiles;
    for (const DeepEntry& element :
         program_.files().ListFilesDeep(folder, pattern, stopping, passed_over)) {
      if (!keep_going_()) return;
      // The staging folder may lie inside of what is backed up.
      if (IsInStage(element.path)) continue;
      const std::string inner =
          element.path.size() > folder.size() ? element.path.substr(folder.size()) : "";
      if (element.is_folder) {
        AddSubfolder(number, element.path, plan_.items[number].target + inner, inner);
      } else {
        AddFile(number, element.path, plan_.items[number].target + inner, inner);
      }
    }
  }

  void NotePassedOver(size_t number, const std::string& folder, const std::string& path,
                      PassedOver why) {
    if (IsInStage(path)) return;
    const bool has_dot = why == PassedOver::kUnreadable;
    const std::string inner = path.size() > folder.size() ? path.substr(folder.size()) : "";
    plan_.items[number].gaps.push_back(
        {path, inner, has_dot ? gap_reason::kUnreadable : gap_reason::kNoDot, has_dot});
  }

  bool IsInStage(const std::string& path) const {
    if (stage_.empty() || path.size() < stage_.size()) return false;
    if (path.size() > stage_.size() && path[stage_.size()] != '\\') return false;
    return EqualsNoCase(path.substr(0, stage_.size()), stage_);
  }

  Draft NewDraft(size_t number, TableMember::Kind kind, const std::string& target) const {
    Draft draft;
    draft.item = number;
    draft.member.kind = kind;
    draft.target = target;
    draft.entry = EntryNameBelow(session_.gBackupFolder, target);
    return draft;
  }

  // Two items may ask for one file. Under one name it stands in the archive once; under two, a copy
  // in the staging folder stands for it.
  void AddFile(size_t number, const std::string& source, const std::string& target,
               const std::string& inner, bool is_missing = false) {
    Draft draft = NewDraft(number, TableMember::Kind::kFile, target);
    draft.source = source;
    draft.is_missing = is_missing;
    draft.member.inner = inner;
    if (!CanBeEntryName(draft.entry)) {
      plan_.items[number].gaps.push_back({source, inner, gap_reason::kNoName});
      return;
    }
    const auto [found, added] = by_source_.emplace(source, drafts_.size());
    if (!added && drafts_[found->second].entry == draft.entry) {
      draft.member.is_shared = true;
      draft.shares = found->second;
    } else if (!added) {
      draft.member.is_staged = true;
      draft.member.original = source;
    }
    drafts_.push_back(std::move(draft));
  }

  // Folders of one name are one entry, since all that it holds is the folder's attributes.
  void AddSubfolder(size_t number, const std::string& folder, const std::string& target,
                    const std::string& inner) {
    Draft draft = NewDraft(number, TableMember::Kind::kFolder, WithoutBackslash(target));
    draft.source = WithBackslash(folder) + kAllFiles;
    draft.member.inner = inner;
    if (!CanBeEntryName(draft.entry)) {
      plan_.items[number].gaps.push_back({folder, inner, gap_reason::kNoName});
      return;
    }
    const auto by_source = by_source_.emplace(draft.source, drafts_.size());
    const auto by_name = folders_.emplace(FoldCase(draft.entry), drafts_.size());
    if (!by_source.second || !by_name.second) {
      draft.member.is_shared = true;
      draft.shares = by_source.second ? by_name.first->second : by_source.first->second;
    }
    drafts_.push_back(std::move(draft));
  }

  static bool NeedsName(const Draft& draft) {
    return draft.member.kind != TableMember::Kind::kFolder && !draft.member.is_shared;
  }

  // The later one of a name wins; a source that is not there wins nothing.
  void NameAll() {
    std::unordered_set<std::string> taken;
    for (const auto& folder : folders_) taken.insert(folder.first);
    std::vector<bool> named(drafts_.size());
    for (const bool missing : {false, true}) {
      for (size_t i = drafts_.size(); i-- > 0;) {
        if (!NeedsName(drafts_[i]) || drafts_[i].is_missing != missing) continue;
        named[i] = taken.insert(FoldCase(drafts_[i].entry)).second;
      }
    }
    for (size_t i = 0; i < drafts_.size(); ++i) {
      if (!NeedsName(drafts_[i]) || named[i]) continue;
      int number = 1;
      while (!taken.insert(FoldCase(NumberedName(drafts_[i].entry, number))).second) ++number;
      drafts_[i].entry = NumberedName(drafts_[i].entry, number);
      drafts_[i].target = NumberedName(drafts_[i].target, number);
    }
  }

  // Where a staged source is made: under its entry's name, unless no file can have that.
  std::string StagedSource(size_t number) const {
    const Draft& draft = drafts_[number];
    if (zip::WhyUnsafe(draft.entry).empty()) return CollapseBackslashes(draft.target);
    return stage_ + "\\Exports\\" + std::to_string(number) + ".reg";
  }

  void FillCollection() {
    FileCollection& files = session_.gFileCollection;
    for (size_t i = 0; i < drafts_.size(); ++i) {
      Draft& draft = drafts_[i];
      if (draft.member.is_shared) {
        draft.member.file = drafts_[draft.shares].member.file;
      } else {
        if (draft.member.is_staged) draft.source = StagedSource(i);
        const bool is_folder = draft.member.kind == TableMember::Kind::kFolder;
        files.Add({draft.source, is_folder ? draft.entry + "\\" + kAllFiles : draft.entry});
        draft.member.file = static_cast<std::uint32_t>(*files.Find(draft.source));
      }
      plan_.items[draft.item].members.push_back(std::move(draft.member));
    }
  }

  Program& program_;
  Session& session_;
  const PhaseApplies& applies_;
  const std::function<bool()>& keep_going_;
  const std::string stage_;
  BackupPlan plan_;
  std::vector<Draft> drafts_;
  std::unordered_map<std::string, size_t> by_source_;  // the first draft of a source
  std::unordered_map<std::string, size_t> folders_;    // by folded entry name
};

}  // namespace

BackupPlan PlanBackup(Program& program, const PhaseApplies& applies,
                      const std::function<bool()>& keep_going) {
  return Planner(program, applies, keep_going).Run();
}

}  // namespace quorvale
