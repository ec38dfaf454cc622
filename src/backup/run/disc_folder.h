// The folder CDBackup of a backup folder, in which the parts of a backup wait for their discs.
//
// The program marks the folder when it makes it, by a hidden file beside it. A folder of that name
// without the mark is someone else's: it is never removed, and of its files only the parts of the
// present backup are touched.
#pragma once

#include <string>
#include <vector>

#include "core/program/program.h"

namespace quorvale {

class DiscFolder {
 public:
  // `path` is the folder itself, or the place where Make() is to put it.
  DiscFolder(Program& program, const std::string& path);

  // Makes the folder, marked, unless one stands there already. False if it can't be made.
  bool Make();
  // True while the folder stands and has the mark.
  bool IsOurs() const;
  // The files that go to discs, as full paths: all of a folder of ours; in another one the parts of
  // the archive "<stem>.obk".
  std::vector<std::string> Parts(const std::string& stem) const;
  // Removes a folder of ours with all in it. Of another one only Parts() go, and only if the
  // archive was made; "" stands for none.
  void Remove(const std::string& archive);
  // The parts stay for the user: takes the mark off, so that no later run removes them.
  void Keep();

 private:
  std::string MarkPath() const;
  void TakeMarkOff();

  Program& program_;
  std::string path_;  // without a final "\"
};

}  // namespace quorvale
