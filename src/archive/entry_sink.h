// Takes what is read of an archive.
#pragma once

#include <cstddef>
#include <cstdint>

#include "archive/entry_decoder.h"
#include "archive/zip_format.h"

namespace quorvale::zip {

// All calls come on the thread of EntryReader::Run.
class EntrySink {
 public:
  virtual ~EntrySink() = default;
  // Before the data of an entry is read. False: it is left out, and not heard of again. Entries
  // are asked for ahead of the data of those before them.
  virtual bool Wants(const Record& record) = 0;
  // Data of an entry that was wanted; entries come in the order in which they were asked for.
  // False: no more data of this entry, please.
  virtual bool Take(const Record& record, const std::uint8_t* data, std::size_t count) = 0;
  // The end of an entry that was wanted. False: the operation ends here.
  virtual bool Done(const Record& record, EntryStatus status) = 0;
};

}  // namespace quorvale::zip
