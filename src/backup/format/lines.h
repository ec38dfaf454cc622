// The texts of this program's own files: lines with CR LF, in the system's code page on disk.
#pragma once

#include <string>

#include "core/program/full_text.h"
#include "core/program/program.h"

namespace quorvale {

class Lines {
 public:
  void Add(const std::string& line) {
    text_ += line;
    text_ += "\r\n";
  }
  // "<name>text</name>" on one line.
  void Element(const std::string& name, const std::string& text) {
    Add("<" + name + ">" + text + "</" + name + ">");
  }
  // The same on three lines.
  void TallElement(const std::string& name, const std::string& text) {
    Add("<" + name + ">");
    Add(text);
    Add("</" + name + ">");
  }
  // The end that settings files and logs have in common.
  void End() {
    Add("</Main>");
    Add("</BackupSettings>");
  }

  const std::string& text() const { return text_; }
  // The file is afterwards the whole old or the whole new one.
  FileStatus Write(Program& program, const std::string& path) const {
    return program.files().WriteWhole(path, program.platform().system.ToAnsi(text_));
  }
  // The same for a file that stays on this computer: what the code page cannot hold stands in full
  // beside it.
  FileStatus WriteWithFullText(Program& program, const std::string& path) const {
    return WriteTextFile(program, path, text_);
  }

 private:
  std::string text_;
};

// The key that belongs to a path of the selection; "" if there is none.
inline std::string BackupItemKey(const BackupJob& job, size_t index) {
  return index < job.gBackupItemKeys.size() ? job.gBackupItemKeys[index] : "";
}

}  // namespace quorvale
