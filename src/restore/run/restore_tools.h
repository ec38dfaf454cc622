// What the steps of one run share.
#pragma once

#include "core/program/program.h"
#include "restore/run/extractor.h"
#include "restore/run/restore_events.h"
#include "restore/run/run_monitor.h"

namespace quorvale {

struct RestoreTools {
  Program& program;
  const RestoreJob& job;
  RunMonitor& monitor;
  Extractor& extractor;
  RestoreResult& result;

  const RestoreOrigin& OriginOf(const RestoreRow& row) const {
    return job.restore_items.at(row.node).origin;
  }
};

}  // namespace quorvale
