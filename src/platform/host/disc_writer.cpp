#include "platform/host/disc_writer.h"

#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "platform/host/child_process.h"

namespace quorvale::host {
namespace {

constexpr char kProgram[] = "xorriso";
constexpr std::uint64_t kBlock = 2048;  // bytes
constexpr size_t kSchemeLength = 5;     // of "file:"
constexpr char kVolumeName[] = "BACKUP";

bool Exists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0;
}

// The text between the next two apostrophes from `at` on, which is moved behind it.
std::optional<std::string> Quoted(const std::string& line, size_t* at) {
  const size_t start = line.find('\'', *at);
  const size_t end = start == std::string::npos ? start : line.find('\'', start + 1);
  if (end == std::string::npos) return std::nullopt;
  *at = end + 1;
  return line.substr(start + 1, end - start - 1);
}

std::optional<std::uint64_t> BlocksAt(const std::string& line, size_t at) {
  at = line.find_first_not_of(' ', at);
  const size_t end = at == std::string::npos ? at : line.find_first_not_of("0123456789", at);
  if (end == std::string::npos || end == at || line[end] != 's' || end - at > 15) {
    return std::nullopt;
  }
  return std::stoull(line.substr(at, end - at));
}

}  // namespace

std::optional<DiscDrive> ParseDriveLine(const std::string& line) {
  size_t at = line.find("-dev '");
  if (at == std::string::npos) return std::nullopt;
  const auto device = Quoted(line, &at);
  const size_t rights = at;
  const auto maker = device ? Quoted(line, &at) : std::nullopt;
  const auto model = maker ? Quoted(line, &at) : std::nullopt;
  if (!model) return std::nullopt;
  DiscDrive drive;
  drive.place = *device;
  drive.maker = Trim(*maker);
  drive.model = Trim(*model);
  drive.can_write = line.find(" rw", rights) != std::string::npos;
  return drive;
}

std::optional<std::uint64_t> ParseBlocks(const std::string& line, const std::string& name) {
  if (!line.starts_with(name)) return std::nullopt;
  const size_t colon = line.find(':');
  return colon == std::string::npos ? std::nullopt : BlocksAt(line, colon + 1);
}

std::optional<std::uint64_t> ParseWritten(const std::string& line) {
  static const std::string kWriting = " Writing:";
  const size_t at = line.find(kWriting);
  return at == std::string::npos ? std::nullopt : BlocksAt(line, at + kWriting.size());
}

HostDiscWriter::HostDiscWriter(const MachineFolder& machine, HostFiles& files)
    : machine_folder_(machine.path), files_(files), disc_(machine.disc) {}

void HostDiscWriter::Use(const MachineDisc& disc) {
  disc_ = disc;
  device_.clear();
  medium_ = 0;
  inserted_ = 0;
}

bool HostDiscWriter::Initialise() { return !disc_.writer.empty() && ProgramExists(kProgram); }

std::vector<DiscDrive> HostDiscWriter::Drives() {
  if (IsFile()) {
    return {{0, true, "file", disc_.writer.substr(kSchemeLength),
             "(" + std::to_string(disc_.size) + " bytes)"}};
  }
  if (disc_.writer.starts_with("/dev/")) return {{0, true, disc_.writer, "drive", "of the host"}};
  std::vector<DiscDrive> drives;
  if (disc_.writer != "drives") return drives;
  RunChild(
      {kProgram, "-devices"},
      [&drives](const std::string& line) {
        std::optional<DiscDrive> drive = ParseDriveLine(line);
        if (!drive) return;
        drive->index = static_cast<int>(drives.size());
        drives.push_back(*drive);
      },
      nullptr);
  return drives;
}

bool HostDiscWriter::Open(int index) {
  const std::vector<DiscDrive> drives = Drives();
  if (index < 0 || index >= static_cast<int>(drives.size())) return false;
  const DiscDrive& drive = drives[static_cast<size_t>(index)];
  device_ = IsFile() ? "file" : drive.place;
  if (IsFile()) return true;
  return !AskDrive({"-toc"}).empty();
}

std::string HostDiscWriter::FileOfMedium(int number) const {
  std::string path = disc_.writer.substr(kSchemeLength);
  if (!path.starts_with("/")) path = machine_folder_ + "/" + path;
  if (number == 1) return path;
  const size_t name = path.rfind('/') + 1;
  size_t dot = path.rfind('.');
  if (dot == std::string::npos || dot < name) dot = path.size();
  return path.substr(0, dot) + "_" + std::to_string(number) + path.substr(dot);
}

void HostDiscWriter::InsertFrom(int number) {
  while (Exists(FileOfMedium(number))) ++number;
  medium_ = number;
  ++inserted_;
}

std::string HostDiscWriter::MediumFile() {
  if (medium_ == 0) InsertFrom(1);
  return FileOfMedium(medium_);
}

std::vector<std::string> HostDiscWriter::AskDrive(const std::vector<std::string>& commands) {
  std::vector<std::string> words = {kProgram, "-abort_on", "FATAL", "-outdev", device_};
  words.insert(words.end(), commands.begin(), commands.end());
  std::vector<std::string> lines;
  bool refused = false;
  const int status = RunChild(
      words,
      [&](const std::string& line) {
        lines.push_back(line);
        if (Contains(line, ": FAILURE :") || Contains(line, ": FATAL :")) refused = true;
      },
      nullptr);
  if (status < 0 || refused) lines.clear();
  return lines;
}

bool HostDiscWriter::MediumLoaded() {
  if (device_.empty()) return false;
  if (IsFile()) {
    MediumFile();
    return !disc_.media || inserted_ <= *disc_.media;
  }
  for (const std::string& line : AskDrive({"-toc"})) {
    if (!line.starts_with("Media current:")) continue;
    return !Contains(line, "not present") && !Contains(line, "not recognizable");
  }
  return false;
}

std::uint64_t HostDiscWriter::FreeBytes() {
  if (!MediumLoaded()) return 0;
  if (IsFile()) return Exists(MediumFile()) ? 0 : disc_.size;
  for (const std::string& line : AskDrive({"-tell_media_space"})) {
    if (const auto blocks = ParseBlocks(line, "Media space")) return *blocks * kBlock;
  }
  return 0;
}

bool HostDiscWriter::Burn(const std::string& path, const std::string& name,
                          const DiscEvents& events) {
  const std::string source = files_.HostPath(path);
  if (source.empty() || !Exists(source) || FreeBytes() == 0) return false;
  // Names as long as Windows has them, for either system's reader.
  const std::vector<std::string> image = {
      "-joliet",   "on",   "-compliance", "joliet_long_names", "-volid",
      kVolumeName, "-map", source,        "/" + name};
  if (events.file_added) events.file_added();
  const auto blocks = ImageBlocks(image, events);
  if (!blocks || *blocks * kBlock > FreeBytes()) return false;
  if (events.write_started) events.write_started();
  if (!IsFile()) return Write(device_, image, *blocks, events);
  // The file has its name only when the medium is whole.
  const std::string file = MediumFile();
  const std::string part = file + ".part";
  unlink(part.c_str());
  const bool written =
      Write("stdio:" + part, image, *blocks, events) && rename(part.c_str(), file.c_str()) == 0;
  if (!written) unlink(part.c_str());
  return written;
}

std::optional<std::uint64_t> HostDiscWriter::ImageBlocks(const std::vector<std::string>& image,
                                                         const DiscEvents& events) {
  std::vector<std::string> words = {kProgram, "-abort_on", "FAILURE", "-outdev", "stdio:/dev/null"};
  words.insert(words.end(), image.begin(), image.end());
  words.insert(words.end(), {"-print_size", "-rollback_end"});
  std::optional<std::uint64_t> blocks;
  const int status = RunChild(
      words,
      [&blocks](const std::string& line) {
        if (const auto found = ParseBlocks(line, "Image size")) {
          blocks = found;
        }
      },
      events.keep_going);
  return status == 0 ? blocks : std::nullopt;
}

bool HostDiscWriter::Write(const std::string& medium, const std::vector<std::string>& image,
                           std::uint64_t blocks, const DiscEvents& events) {
  std::vector<std::string> words = {kProgram, "-abort_on", "FAILURE", "-close",
                                    "on",     "-outdev",   medium};
  words.insert(words.end(), image.begin(), image.end());
  words.push_back("-commit");
  const auto on_line = [&](const std::string& line) {
    const auto done = ParseWritten(line);
    if (done && events.progress) events.progress(std::min(*done, blocks), blocks);
  };
  if (RunChild(words, on_line, events.keep_going) != 0) return false;
  if (events.progress) events.progress(blocks, blocks);
  return true;
}

void HostDiscWriter::Eject() {
  if (device_.empty()) return;
  if (!IsFile()) {
    AskDrive({"-eject", "out"});
    return;
  }
  InsertFrom(medium_ + 1);
}

}  // namespace quorvale::host
