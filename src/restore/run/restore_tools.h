// What the steps of one run share.
#pragma once

#include <string>

#include "core/program/program.h"
#include "restore/run/extractor.h"
#include "restore/run/restore_events.h"
#include "restore/run/restore_places.h"
#include "restore/run/run_monitor.h"

namespace quorvale {

struct RestoreTools {
  Program& program;
  const RestoreJob& job;
  RunMonitor& monitor;
  Extractor& extractor;
  RestoreResult& result;
  RestoreAccount& account;

  const RestoreOrigin& OriginOf(const RestoreRow& row) const {
    return job.restore_items.at(row.node).origin;
  }
  // Where an entry of the backup stays that is not to go home.
  std::string PlaceOfLeft(const std::string& entry) const {
    return FolderForLeftItems(program, job) + "\\" + extractor.MemberName(entry);
  }
};

}  // namespace quorvale
