// Turns the packed bytes of one entry into its data, and compares the check value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "archive/bytes.h"
#include "archive/decryptor.h"
#include "archive/zip_format.h"

struct libdeflate_decompressor;

namespace quorvale::zip {

enum class EntryStatus {
  kGood,
  kDamaged,
  kWrongPassword,  // refused by the check in front of the data
  kUnsupported,    // packed or encrypted in a way that is not known here
};

// Entries whose size and compressed size are both at most this are decoded as a whole.
inline constexpr std::uint64_t kLargestWhole = 4 * 1024 * 1024;

// Whether the entry can be decoded at all, by what the directory says of it.
EntryStatus CheckRecord(const Record& record);

// One is used by one thread at a time.
class WholeDecoder {
 public:
  WholeDecoder();
  ~WholeDecoder();
  WholeDecoder(const WholeDecoder&) = delete;
  WholeDecoder& operator=(const WholeDecoder&) = delete;

  // `packed` holds all bytes of the entry, with those of its encryption; they are used up. There
  // are kPieceEnd bytes of room behind them.
  EntryStatus Decode(const Record& record, Bytes* packed, const std::vector<std::string>& passwords,
                     Bytes* data);

  // Unpacks a piece (BlockCompressor::CompressPiece) that fills `data` to its capacity, and
  // computes its check value. There are kPieceEnd bytes of room behind the packed ones.
  bool DecodePiece(Bytes* packed, Bytes* data, std::uint32_t* crc);
  static constexpr std::size_t kPieceEnd = 5;

 private:
  libdeflate_decompressor* decompressor_;
};

// Decodes an entry of any size, step by step.
class StreamDecoder {
 public:
  StreamDecoder(const Record& record, const std::vector<std::string>& passwords);
  ~StreamDecoder();
  StreamDecoder(const StreamDecoder&) = delete;
  StreamDecoder& operator=(const StreamDecoder&) = delete;

  // The bytes of the encryption in front of and behind the packed data; 0 if there is none.
  std::size_t HeaderSize() const;
  std::size_t TrailerSize() const;
  // kGood if data may follow.
  EntryStatus Begin(const std::uint8_t* header);
  // Decrypts newly read bytes in place.
  void Decrypt(std::uint8_t* data, std::size_t count);
  // Unpacks from in[*used...] until that is used up or `out` is full. False if it is damaged, or
  // more than the directory told.
  bool Unpack(const Bytes& in, std::size_t* used, Bytes* out);
  // To be called when all is unpacked.
  EntryStatus End(const std::uint8_t* trailer);
  // The same where others have unpacked what was decrypted here, to data of this check value.
  EntryStatus EndOfPieces(const std::uint8_t* trailer, std::uint32_t crc);

 private:
  struct Inflater;

  const Record& record_;
  const std::vector<std::string>& passwords_;
  std::unique_ptr<Decryptor> decryptor_;
  std::unique_ptr<Inflater> inflater_;
  std::uint64_t produced_ = 0;
  std::uint32_t crc_ = 0;
};

}  // namespace quorvale::zip
