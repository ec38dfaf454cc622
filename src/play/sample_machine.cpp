#include "play/sample_machine.h"

#include <array>
#include <string_view>

#include "base/paths.h"
#include "base/text.h"
#include "platform/file_toolkit.h"
#include "platform/registry_text.h"

namespace quorvale {
namespace {

// 2007-03-05 09:00:00 UTC as a file time, and an hour.
constexpr FileTime kFirstMoment = 128175588000000000;
constexpr FileTime kHour = 36000000000;

// A small generator of numbers: the same on every computer, which the standard ones are not.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed * 2654435761u + 88172645463325252u) {}
  std::uint64_t Next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 7;
    state_ ^= state_ << 17;
    return state_;
  }
  size_t Below(size_t limit) { return static_cast<size_t>(Next() % limit); }
  template <class List>
  std::string Pick(const List& list) {
    return std::string(list[Below(list.size())]);
  }

 private:
  std::uint64_t state_;
};

constexpr std::array<std::string_view, 12> kPeople = {
    "Clara Winter", "Jonas Feld",   "Mia Sommer", "Paul Berger",  "Ines Kramer", "Tom Ziegler",
    "Ruth Amsel",   "Karl Niemand", "Lea Morgen", "Otto Lindner", "Eva Steiner", "Max Brandt"};
constexpr std::array<std::string_view, 10> kSubjects = {
    "The shed roof",      "Minutes of Tuesday",    "Train at half past nine", "Your book",
    "Photos of the lake", "Invoice for the paint", "Choir on Friday",         "Keys for the cellar",
    "Apples again",       "Plan for the kitchen"};
constexpr std::array<std::string_view, 14> kOpenings = {
    "I looked at it once more yesterday evening",
    "The neighbour asked about it on the stairs",
    "We could do it on the second weekend of the month",
    "Could you bring the long ladder",
    "It rained all day, so I stayed in and sorted papers",
    "The bill is lower than I feared",
    "Nobody has answered yet",
    "I put a copy into the drawer in the hall",
    "The shop has it back in stock",
    "My sister will be there as well",
    "Please say until Thursday whether that suits you",
    "The colour is not what the label said",
    "They moved the meeting to the small room",
    "I measured twice and it is still too short"};
constexpr std::array<std::string_view, 6> kClosings = {"See you soon",         "Until Sunday",
                                                       "Thanks for all of it", "Warm regards",
                                                       "More by telephone",    "Take care"};

std::string Sentences(Dice* dice, size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += dice->Pick(kOpenings) + ". ";
  return Trim(text);
}

std::string AddressOf(const std::string& person) {
  return ReplaceAll(FoldCase(person), " ", ".") + "@example.org";
}

std::string Letter(Dice* dice, const std::string& user, int number) {
  const std::string person = dice->Pick(kPeople);
  std::string text;
  text += "From: " + person + " <" + AddressOf(person) + ">\r\n";
  text += "To: " + user + " <" + FoldCase(user) + "@example.net>\r\n";
  text += "Subject: " + dice->Pick(kSubjects) + "\r\n";
  text += "Date: Mon, 5 Mar 2007 " + std::to_string(8 + number % 12) + ":" +
          std::to_string(10 + number % 50) + ":00 +0100\r\n";
  text += "Message-ID: <" + std::to_string(dice->Next() % 100000000) + "@example.org>\r\n\r\n";
  text += Sentences(dice, 3 + dice->Below(6)) + "\r\n\r\n" + dice->Pick(kClosings) + ",\r\n" +
          person + "\r\n";
  return text;
}

// A store file in the manner of the mail program: a head that marks it, then the messages.
std::string MailStore(Dice* dice, const std::string& user, int messages) {
  std::string bytes("\xCF\xAD\x12\xFE\xC5\xFD\x74\x6F\x66\xE3\xD1\x11\x9A\x4E\x00\xC0", 16);
  bytes.resize(0x24BC, '\0');
  for (int i = 0; i < messages; ++i) bytes += Letter(dice, user, i) + std::string(4, '\0');
  return bytes;
}

// Bytes that compress a little, as documents do.
std::string Filling(Dice* dice, std::uint64_t size) {
  std::string bytes(static_cast<size_t>(size), ' ');
  std::uint64_t word = 0;
  for (size_t i = 0; i < bytes.size(); ++i) {
    if (i % 8 == 0) word = dice->Next() & 0x3F3F7F7F1F1F7F7Fu;
    bytes[i] = static_cast<char>(word >> (i % 8 * 8) & 0xFF);
  }
  return bytes;
}

// Writes files and registry values and remembers whether all went well.
class Filler {
 public:
  Filler(Platform& platform, const MachinePlan& plan, const SampleOptions& options)
      : platform_(platform),
        plan_(plan),
        options_(options),
        layout_(*LayoutOf(plan.like, plan.user)),
        toolkit_(platform.files, [] {}),
        dice_(plan.user.size() * 1000 + plan.like.size()) {}

  bool Run() {
    if (layout_.IsVista()) {
      FillWindowsMail();
    } else {
      FillOutlookExpress();
    }
    FillOutlook();
    FillBrowser();
    FillDocuments();
    FillDesktop();
    FillExtras();
    return ok_;
  }

 private:
  void File(const std::string& path, const std::string& bytes, std::uint32_t attributes = 0) {
    ok_ = toolkit_.MakeFolderChain(ParentFolder(path)) &&
          toolkit_.WriteWhole(path, bytes) == FileStatus::kOk && ok_;
    // Even seconds: older drives count no finer.
    const FileTime modified = kFirstMoment + kHour * (files_++ * 7 % 5000);
    ok_ = platform_.files.SetModified(path, modified) == FileStatus::kOk && ok_;
    // A new file is marked for archiving anyway.
    if (attributes == 0) return;
    ok_ = platform_.files.SetAttributes(path, attributes) == FileStatus::kOk && ok_;
  }
  void Folder(const std::string& path) { ok_ = toolkit_.MakeFolderChain(path) && ok_; }

  void Value(const std::string& key, const std::string& name, std::uint32_t type,
             const std::string& data) {
    const std::optional<RegistryPath> path = ParseRegistryPath(key);
    ok_ = path && platform_.registry.CreateKey(path->root, path->subkey) == registry_status::kOk &&
          platform_.registry.SetValue(path->root, path->subkey, name, type, data) ==
              registry_status::kOk &&
          ok_;
  }
  void String(const std::string& key, const std::string& name, const std::string& text) {
    const std::optional<RegistryPath> path = ParseRegistryPath(key);
    ok_ = path && platform_.registry.CreateKey(path->root, path->subkey) == registry_status::kOk &&
          platform_.registry.SetText(path->root, path->subkey, name, registry_type::kString,
                                     text) == registry_status::kOk &&
          ok_;
  }
  void Number(const std::string& key, const std::string& name, std::uint32_t number) {
    std::string data;
    for (int i = 0; i < 4; ++i) data += static_cast<char>(number >> (8 * i) & 0xFF);
    Value(key, name, registry_type::kDword, data);
  }
  void Wide(const std::string& key, const std::string& name, const std::string& text) {
    Value(key, name, registry_type::kBinary, Utf8ToUtf16Bytes(text) + std::string(2, '\0'));
  }

  void FillOutlookExpress();
  void FillAccounts();
  void FillIdentity();
  void FillWindowsMail();
  void FillOutlook();
  void FillBrowser();
  void FillDocuments();
  void FillDesktop();
  void FillExtras();

  // Outlook's profiles.
  struct Section {
    std::string name;
    std::string path;  // "" for a server mailbox
  };
  std::string ProfilesRoot() const;
  void Profile(const std::string& name, const std::vector<Section>& sections,
               const std::string& offline_store);
  void ProfileText(const std::string& key, const std::string& tag, const std::string& text);

  Platform& platform_;
  const MachinePlan& plan_;
  const SampleOptions& options_;
  MachineLayout layout_;
  FileToolkit toolkit_;
  Dice dice_;
  int files_ = 0;
  int sections_ = 0;
  bool ok_ = true;
};

void Filler::FillOutlookExpress() {
  const std::string store = MailStoreFolder(plan_, layout_);
  for (const char* name :
       {"Inbox", "Outbox", "Sent Items", "Deleted Items", "Drafts", "Folders", "Offline",
        "Pop3uidl", "Family", "Work", "Choir", "Garden", "Travel 2006", "Invoices", "Newsletters",
        "Old house", "Müller & Söhne", "news.example.org"}) {
    File(store + "\\" + name + ".dbx",
         MailStore(
             &dice_, plan_.user,
             static_cast<int>(dice_.Below(static_cast<size_t>(options_.messages_per_folder)))));
  }
  const std::string book = layout_.app_data + "\\Microsoft\\Address Book\\" + plan_.user;
  std::string people("\x9C\xCB\xCB\x8D\x13\x75\xD2\x11\x91\x58\x00\xC0\x4F\x79\x56\xA4", 16);
  for (const std::string_view person : kPeople) {
    people += std::string(person) + '\0' + AddressOf(std::string(person)) + '\0';
  }
  File(book + ".wab", people);
  File(book + ".wab~", people.substr(0, people.size() / 2));
  const std::string stationery = layout_.common_files + "\\Microsoft Shared\\Stationery\\";
  File(stationery + "Leaves.htm", "<html><body background=\"Leaves.gif\"></body></html>\r\n");
  File(stationery + "Leaves.gif", "GIF89a" + Filling(&dice_, 900));
  File(stationery + "Plain Blue.htm", "<html><body bgcolor=\"#DDE8F4\"></body></html>\r\n");
  FillAccounts();
  FillIdentity();
}

void Filler::FillAccounts() {
  const std::string accounts = "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager";
  String(accounts, "Default Mail Account", "00000001");
  const std::string first = accounts + "\\Accounts\\";
  const std::string address = FoldCase(plan_.user) + "@example.net";
  String(first + "00000001", "Account Name", "Home mail");
  String(first + "00000001", "POP3 Server", "pop.example.net");
  String(first + "00000001", "SMTP Server", "smtp.example.net");
  String(first + "00000001", "SMTP Email Address", address);
  String(first + "00000001", "SMTP Display Name", plan_.user);
  Number(first + "00000001", "POP3 Port", 110);
  String(first + "00000002", "Account Name", "Club");
  String(first + "00000002", "IMAP Server", "imap.example.org");
  String(first + "00000002", "SMTP Email Address", "club@example.org");
  String(first + "00000003", "Account Name", "Provider mail");
  String(first + "00000003", "Domain is MSN.com", "1");
  String(first + "00000003", "SMTP Email Address", FoldCase(plan_.user) + "@provider.example");
  String(first + "00000004", "Account Name", "Groups");
  String(first + "00000004", "NNTP Server", "news.example.org");
  String(first + "00000005", "Account Name", "People directory");
  String(first + "00000005", "LDAP Server", "ldap.example.org");
}

void Filler::FillIdentity() {
  const std::string five = IdentityKey(plan_) + "\\Software\\Microsoft\\Outlook Express\\5.0";
  const std::string blocked = five + "\\Block Senders\\Mail\\Criteria\\";
  String(blocked + "000", "Value", "offers@bargain.example");
  String(blocked + "001", "Value", "prize@winner.example");
  String(blocked + "002", "Value", "bargain.example");
  String(five + "\\Rules\\Mail", "Version", "5.0");
  String(five + "\\Rules\\Mail\\000", "Name", "Choir into its folder");
  Number(five + "\\Rules\\Mail\\000", "Enabled", 1);
  String(five + "\\Rules\\Mail\\001", "Name", "Invoices & bills");
  Number(five + "\\Rules\\Mail\\001", "Enabled", 1);
  String(five + "\\Rules\\News", "Version", "5.0");
  String(five + "\\signatures", "Default Signature", "00000000");
  String(five + "\\signatures\\00000000", "name", "Private");
  String(five + "\\signatures\\00000000", "text", plan_.user + ", by the old mill");
  Number(five + "\\signatures\\00000000", "type", 1);
  String(five + "\\signatures\\00000001", "name", "Club letter");
  String(five + "\\signatures\\00000001", "text", "For the board\r\n" + plan_.user);
  Number(five + "\\signatures\\00000001", "type", 1);
  Number(five + "\\Mail", "Check Mail on Startup", 1);
  Number(five + "\\Mail", "Poll For Mail", 1800000);
  String(five + "\\Mail", "Wide Stationery Name", "Leaves.htm");
  Number(five + "\\News", "Mark As Read", 5);
  String(five + "\\Trident\\Main", "Default_Search_URL", "http://search.example.org/");
}

void Filler::FillWindowsMail() {
  const std::string store = layout_.local_app_data + "\\Microsoft\\Windows Mail";
  for (const char* folder : {"Inbox", "Sent Items", "Drafts", "Family", "Choir"}) {
    const std::string place = store + "\\Local Folders\\" + folder;
    for (int i = 0; i < 8; ++i) {
      File(place + "\\" + std::to_string(10000000 + i) + ".eml", Letter(&dice_, plan_.user, i));
    }
  }
  File(store + "\\WindowsMail.MSMessageStore", Filling(&dice_, 200000));
  File(store + "\\account{6A1B2C3D-0001-4444-8888-101112131415}.oeaccount",
       "<?xml version=\"1.0\"?><MessageAccount><Account_Name>Home mail</Account_Name>"
       "</MessageAccount>\r\n");
  Folder(store + "\\Backup\\new");
  for (const std::string_view person : kPeople) {
    File(layout_.profile + "\\Contacts\\" + std::string(person) + ".contact",
         "<?xml version=\"1.0\"?><contact>" + std::string(person) + "</contact>\r\n");
  }
  const std::string key = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows Mail";
  String(key, "Store Root", store + "\\");
  Number(key, "MailAccountsConfigured", 1);
  String(key + "\\Mail", "Signature", plan_.user + ", by the old mill");
  String(key + "\\Rules\\Mail\\000", "Name", "Choir into its folder");
}

// Windows 98 and its kin keep the profiles at a place of their own.
std::string Filler::ProfilesRoot() const {
  return layout_.IsNtFamily() ? "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion"
                                "\\Windows Messaging Subsystem\\Profiles"
                              : "HKEY_CURRENT_USER\\SOFTWARE\\Microsoft"
                                "\\Windows Messaging Subsystem\\Profiles";
}

// Outlook 2003 and later store text in 16 bits, earlier versions in 8.
void Filler::ProfileText(const std::string& key, const std::string& tag, const std::string& text) {
  const bool wide = layout_.IsVista() || plan_.like == "xp";
  String(key, "001e" + tag, text);
  if (wide) Wide(key, "001f" + tag, text);
}

void Filler::Profile(const std::string& name, const std::vector<Section>& sections,
                     const std::string& offline_store) {
  const std::string key = ProfilesRoot() + "\\" + name;
  std::string list;
  for (const Section& section : sections) {
    std::string identifier;
    std::string folder;
    for (int i = 0; i < 16; ++i) {
      const int byte = (sections_ * 37 + i * 29) % 199 + 33;
      identifier += static_cast<char>(byte);
      folder += "0123456789abcdef"[byte / 16];
      folder += "0123456789abcdef"[byte % 16];
    }
    ++sections_;
    list += identifier;
    ProfileText(key + "\\" + folder, "3001", section.name);
    if (!section.path.empty()) ProfileText(key + "\\" + folder, "6700", section.path);
  }
  const std::string services = key + "\\9207f3e0a3b11019908b08002b2a56c2";
  if (list.empty()) {
    String(key, "001e3001", name);
  } else {
    Value(services, "01023d00", registry_type::kBinary, list);
  }
  if (!offline_store.empty()) {
    Wide(key + "\\13dbb0c8aa05101a9bb000aa002fc45a", "001f6610", offline_store);
  }
}

void Filler::FillOutlook() {
  const std::string roaming = layout_.profile + "\\Application Data\\Microsoft\\Outlook";
  const std::string local =
      layout_.profile + "\\Local Settings\\Application Data\\Microsoft\\Outlook";
  const std::string nt_root =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows NT\\CurrentVersion"
      "\\Windows Messaging Subsystem\\Profiles";
  if (layout_.IsVista()) {
    String(nt_root, "DefaultProfile", "Outlook");
    Profile("Outlook", {{"Personal Folders", local + "\\Outlook.pst"}}, "");
    Profile("Zweitwohnung", {{"House", local + "\\House.pst"}}, "");
  } else if (plan_.like == "xp") {
    String(nt_root, "DefaultProfile", "Office");
    Profile("Archive only", {}, "");
    Profile("Office",
            {{"Personal Folders", local + "\\Outlook.pst"},
             {"Archive Folders", "C:\\Mail archive\\archive.pst"},
             {"Mailbox - " + plan_.user, ""}},
            local + "\\office.ost");
    Profile("Travel", {{"Travel", local + "\\Travel notes.pst"}}, "");
    File("C:\\Mail archive\\archive.pst", "!BDN" + Filling(&dice_, 120000));
    File(local + "\\office.ost", "!BDN" + Filling(&dice_, 60000));
    File(local + "\\Travel notes.pst", "!BDN" + Filling(&dice_, 30000));
  } else {
    String(nt_root, "DefaultProfile", "Standard");
    String(ProfilesRoot(), "DefaultProfile", "Standard");
    Profile("Old", {{"Old letters", local + "\\old.pst"}}, "");
    Profile("Standard", {{"Personal Folders", local + "\\Outlook.pst"}}, "");
    // The test for the program's presence looks at the newer place on every system.
    String(nt_root + "\\Standard", "001e3001", "Standard");
    File(local + "\\old.pst", "!BDN" + Filling(&dice_, 30000));
  }
  File(local + "\\Outlook.pst", "!BDN" + Filling(&dice_, 250000));
  if (layout_.IsVista()) File(local + "\\House.pst", "!BDN" + Filling(&dice_, 40000));
  File(local + "\\contacts.pab", "PAB" + Filling(&dice_, 5000));
  File(roaming + "\\Junk Senders.txt", "offers@bargain.example\r\n");
  File(roaming + "\\Adult Content Senders.txt", "night@club.example\r\n");
  File(roaming + "\\VbaProject.OTM", Filling(&dice_, 7000));
  File(roaming + "\\Outlook.NK2", Filling(&dice_, 3000));
  File(roaming + "\\outcmd.dat", Filling(&dice_, 1500));
  const std::string proof = layout_.IsVista() ? "UProof" : "Proof";
  File(layout_.profile + "\\Application Data\\Microsoft\\" + proof + "\\CUSTOM.DIC",
       "Quitten\r\nLindner\r\n");
  const std::string signatures = layout_.profile + "\\Application Data\\Microsoft\\Signatures";
  File(signatures + "\\Business.txt", plan_.user + "\r\nOffice\r\n");
  File(signatures + "\\Business.htm", "<p>" + plan_.user + "</p>\r\n");
  File(signatures + "\\Business.rtf", "{\\rtf1 " + plan_.user + "}\r\n");
  Number("HKEY_CURRENT_USER\\Software\\Microsoft\\Exchange\\Client\\Options", "PickLogonProfile",
         1);
}

void Filler::FillBrowser() {
  const std::string key = "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Explorer";
  String(key + "\\TypedURLs", "url1", "http://www.example.org/garden");
  String(key + "\\TypedURLs", "url2", "http://weather.example.net/");
  String(key + "\\Main", "Start Page", "http://start.example.org/");
  String("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings",
         "ProxyServer", "proxy.example.net:8080");
  String("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer\\Main", "Default_Page_URL",
         "http://start.example.org/");
  const auto favorite = [this](const std::string& name, const std::string& address) {
    File(layout_.favorites + "\\" + name + ".url", "[InternetShortcut]\r\nURL=" + address + "\r\n");
  };
  favorite("Weather", "http://weather.example.net/");
  favorite("Garden\\Apple trees", "http://www.example.org/apples");
  favorite("Garden\\Tools & seeds", "http://shop.example.org/seeds");
  favorite("Music\\Choir", "http://choir.example.org/");
  const std::string cookie = FoldCase(plan_.user);
  File(layout_.cookies + "\\" + cookie + "@example[1].txt", "visits\n12\nexample.org/\n");
  File(layout_.cookies + "\\" + cookie + "@weather[2].txt", "town\nlake\nweather.example.net/\n");
  File(layout_.cookies + "\\index.dat", Filling(&dice_, 4096));
}

void Filler::FillDocuments() {
  const std::string root = layout_.documents + "\\";
  for (int i = 1; i <= 12; ++i) {
    File(root + "Letters\\2007\\Letter " + std::to_string(i) + ".txt",
         Sentences(&dice_, 20) + "\r\n");
  }
  File(root + "Household\\Costs & savings.csv", "month;sum\r\nMarch;412\r\n");
  File(root + "Household\\Größe der Räume.txt", "Küche 12\r\nFlur 5\r\n");
  File(root + "Household\\été à la mer.txt", Sentences(&dice_, 5));
  // The older family of systems has no names outside its code page.
  if (layout_.IsNtFamily()) {
    File(root + "Far away\\Письмо Ивану.txt", Sentences(&dice_, 5));
    File(root + "Far away\\日本の写真.jpg", "\xFF\xD8\xFF" + Filling(&dice_, 20000));
  }
  File(root + "Letters\\README", "A file without an extension.\r\n");
  File(root + "hidden notes.txt", Sentences(&dice_, 3),
       file_attribute::kHidden | file_attribute::kArchive);
  File(root + "do not change.txt", Sentences(&dice_, 3),
       file_attribute::kReadOnly | file_attribute::kArchive);
  File(root + "empty.txt", "");
  File(root + "Pictures\\lake.bmp", "BM" + Filling(&dice_, 300000));
  File(root + "Film of the lake.avi", "RIFF" + Filling(&dice_, options_.big_file_bytes));
  Folder(root + "Empty folder");
  Folder(root + "Projects\\Nothing yet\\Still nothing");
  std::string deep = root + "Projects";
  for (int level = 1; level <= 12; ++level) deep += "\\Level " + std::to_string(level);
  File(deep + "\\at the bottom.txt", "Down here.\r\n");
}

void Filler::FillDesktop() {
  const std::string root = layout_.desktop + "\\";
  File(root + "To do.txt", "Buy paint\r\nCall Clara\r\n");
  File(root + "Garden plan.doc", Filling(&dice_, 15000));
  File(root + "Shortcuts\\Mail program.lnk", "L" + Filling(&dice_, 500));
  Folder(root + "New Folder");
}

void Filler::FillExtras() {
  const SampleExtras extras = ExtrasOf(plan_);
  for (const std::string& folder : extras.folders) {
    File(folder + "\\Estimates\\roof.txt", Sentences(&dice_, 10));
    File(folder + "\\Estimates\\paint & glue.txt", Sentences(&dice_, 8));
    File(folder + "\\drawing.dwg", Filling(&dice_, 40000));
    Folder(folder + "\\Not begun");
  }
  for (const std::string& file : extras.files) File(file, Filling(&dice_, 12000));
}

}  // namespace

SampleExtras ExtrasOf(const MachinePlan& plan) {
  for (const PlannedDrive& drive : plan.drives) {
    if (drive.letter == "D")
      return {{"D:\\Projects\\House & garden"}, {"D:\\Scans\\receipt 12.pdf"}};
  }
  return {{"C:\\Projects\\House & garden"}, {"C:\\Scans\\receipt 12.pdf"}};
}

bool FillSample(Platform& platform, const MachinePlan& plan, const SampleOptions& options) {
  return Filler(platform, plan, options).Run();
}

}  // namespace quorvale
