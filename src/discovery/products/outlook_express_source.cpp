// Mail stores, address books and stationery are files to copy; accounts, blocked senders, rules,
// signatures and settings are registry keys to export. Only the identity that is the default one
// is looked at.
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/paths.h"
#include "base/text.h"
#include "discovery/products/ModbasTvw.h"
#include "discovery/products/outlook_express_places.h"
#include "discovery/products/product_fills.h"
#include "discovery/products/product_table.h"

namespace quorvale {
namespace {

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;
constexpr char kAccounts[] = "SOFTWARE\\Microsoft\\Internet Account Manager\\Accounts\\";

enum class AccountKind { kMsn, kMail, kNews, kDirectory };

struct Row {
  std::string text;
  std::string tag;                        // the registry key that a backup exports
  AccountKind kind = AccountKind::kMail;  // of an account
};

class OutlookExpressTree {
 public:
  OutlookExpressTree(Program& program, ui::TreeView& tree) : program_(program), tree_(tree) {}

  void Run() {
    root_ = AddProductRoot(tree_, ProductId::kOutlookExpress);
    if (root_ == nullptr) return;
    identity_ = DefaultIdentity(program_);
    AddAccounts();
    AddAddressBooks();
    AddRows(AddGroup("Blocked Senders", "Blocked Senders"), "bs",
            SubKeyCountBS(IdentityKey("Block Senders\\Mail\\Criteria\\")));
    AddMessages();
    AddRows(AddGroup("Message Rules", "Message Rules"), "mr",
            SubKeyCountMR(IdentityKey("Rules\\")));
    AddRows(AddGroup("Signature", "Signature"), "sg", SubKeyCountSG(IdentityKey("signatures\\")));
    AddStationery();
    AddRows(AddGroup("System Settings", "System Settings"), "set", SubKeyCountSET(IdentityKey("")));
    AddWholeKeys();
    UpdateNodeChecks(tree_, root_);
  }

 private:
  ui::TreeNode* AddGroup(const std::string& key, const std::string& text) {
    return tree_.Add(root_, key, text, "fc", "fo");
  }

  // A key of the default identity; "" if there is no such identity.
  std::string IdentityKey(const std::string& below) const {
    return identity_.empty() ? "" : IdentitySettingsKey(identity_) + below;
  }

  std::string Value(const std::string& key, const std::string& name) {
    return program_.registry().RegGetValue(kUser, key, name);
  }

  // One row for each subkey of `path` that `make` wants. No rows if the key cannot be opened.
  std::vector<Row> Enumerate(const std::string& path,
                             const std::function<bool(const std::string& name, Row* row)>& make) {
    std::vector<Row> rows;
    if (path.empty()) return rows;
    std::vector<std::string> names;
    program_.registry().store().ListSubkeys(kUser, path, &names);
    for (const std::string& name : names) {
      Row row;
      row.tag = "HKEY_CURRENT_USER\\" + path + name;
      if (make(name, &row)) rows.push_back(std::move(row));
      program_.Pump();
    }
    return rows;
  }

  AccountKind KindOfAccount(const std::string& key) {
    if (Value(key, "Domain is MSN.com") == "1") return AccountKind::kMsn;
    if (!Value(key, "NNTP Server").empty()) return AccountKind::kNews;
    if (!Value(key, "LDAP Server").empty()) return AccountKind::kDirectory;
    return AccountKind::kMail;
  }

  std::vector<Row> SubKeyCount(const std::string& path) {
    return Enumerate(path, [&](const std::string& name, Row* row) {
      const std::string key = path + name + "\\";
      row->text = Value(key, "Account Name");
      row->kind = KindOfAccount(key);
      return true;
    });
  }

  std::vector<Row> SubKeyCountBS(const std::string& path) {
    return Enumerate(path, [&](const std::string& name, Row* row) {
      row->text = Value(path + name + "\\", "Value");
      return true;
    });
  }

  std::vector<Row> SubKeyCountMR(const std::string& path) {
    return Enumerate(path, [](const std::string& name, Row* row) {
      row->text = name;
      return true;
    });
  }

  std::vector<Row> SubKeyCountSG(const std::string& path) {
    return Enumerate(path, [&](const std::string& name, Row* row) {
      row->text = Value(path + name + "\\", "name");
      return true;
    });
  }

  // What the groups above hold already is left out.
  std::vector<Row> SubKeyCountSET(const std::string& path) {
    return Enumerate(path, [](const std::string& name, Row* row) {
      row->text = name;
      return !Contains(name, "Block Sender") && !Contains(name, "Rules") &&
             !Contains(name, "signature");
    });
  }

  void AddRows(ui::TreeNode* group, const std::string& image, const std::vector<Row>& rows) {
    if (group == nullptr) return;
    for (const Row& row : rows) tree_.Add(group, row.tag, row.text, image);
  }

  void AddAccounts() {
    ui::TreeNode* group = AddGroup("Account Settings", "Account Settings");
    const std::vector<Row> rows = SubKeyCount(kAccounts);
    for (const Row& row : rows) {
      if (row.kind == AccountKind::kMsn) tree_.Add(group, row.tag, row.text, "msn");
      if (row.kind == AccountKind::kMail) tree_.Add(group, row.tag, row.text, "non");
    }
    for (const Row& row : rows) {
      if (row.kind == AccountKind::kNews || row.kind == AccountKind::kDirectory) {
        tree_.Add(group, row.tag, row.text, "new");
      }
    }
  }

  // The names of the plain files of a folder.
  std::vector<std::string> FileNames(const std::string& folder) {
    std::vector<std::string> names;
    for (const FileInfo& entry : program_.files().files().List(folder)) {
      if (!entry.IsFolder()) names.push_back(entry.name);
    }
    return names;
  }

  void AddAddressBooks() {
    ui::TreeNode* group = AddGroup("Address Book", "Address Book");
    const std::string folder = AddressBookFolder(program_);
    if (folder.empty()) return;
    program_.files().MakeFolderChain(folder);
    for (const std::string& name : FileNames(folder)) {
      if (!Contains(name, ".wab~")) tree_.Add(group, folder + name, name, "ab");
    }
  }

  // The folder of the mail stores with a final "\", "" if none is named.
  std::string StoreFolder() {
    if (identity_.empty()) return "";
    const std::string root = StoreRoot(program_, identity_);
    return root.empty() ? "" : WithBackslash(root);
  }

  void AddMessages() {
    ui::TreeNode* group = AddGroup("Email Messages", "Email Messages");
    const std::string folder = StoreFolder();
    std::vector<std::string> names;
    if (!folder.empty()) names = FileNames(folder);

    struct Standard {
      const char* name;
      const char* image;
    };
    constexpr Standard kStandard[] = {{"inbox.dbx", "ib"},
                                      {"outbox.dbx", "ob"},
                                      {"sent items.dbx", "se"},
                                      {"deleted items.dbx", "de"},
                                      {"drafts.dbx", "dr"}};
    std::map<std::string, std::string> first_match;  // by the lower-case name
    std::vector<std::string> others;
    for (const Standard& standard : kStandard) first_match[standard.name];
    for (const std::string& name : names) {
      const auto match = first_match.find(FoldCase(name));
      if (match == first_match.end()) {
        others.push_back(name);
      } else if (match->second.empty()) {
        match->second = name;
      }
    }
    for (const Standard& standard : kStandard) {
      const std::string& name = first_match[standard.name];
      if (!name.empty()) tree_.Add(group, folder + name, name, standard.image);
    }
    ui::TreeNode* other_folders =
        tree_.Add(group, "Other Mail Folders", "Other Mail Folders", "mf");
    program_.Pump();
    for (const std::string& name : others) tree_.Add(other_folders, folder + name, name, "mf");
  }

  void AddStationery() {
    ui::TreeNode* group = AddGroup("Stationery", "Stationery");
    const std::string folder = StationeryFolder(program_);
    if (folder.empty()) return;
    for (const std::string& name : FileNames(folder)) {
      tree_.Add(group, folder + name, name, "st");
    }
  }

  void AddWholeKeys() {
    ui::TreeNode* group = AddGroup("OESettings", "Settings");
    tree_.Add(group, "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager",
              "Account Manager", "reg");
    tree_.Add(group, "HKEY_CURRENT_USER\\Software\\Microsoft\\Outlook Express", "Outlook Exp",
              "reg");
    tree_.Add(group, "HKEY_CURRENT_USER\\Identities", "Identities", "reg");
  }

  Program& program_;
  ui::TreeView& tree_;
  ui::TreeNode* root_ = nullptr;
  std::string identity_;
};

}  // namespace

void FillOutlookExpressNodes(Program& program, ui::TreeView& tree) {
  OutlookExpressTree(program, tree).Run();
}

}  // namespace quorvale
