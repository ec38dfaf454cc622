// This program's jobs in the system's task scheduler: what they are made of, and how they are told.
// The scheduler's list is the only store; a job of this program is known by its comment.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/program/program.h"
#include "platform/task_scheduler.h"

namespace quorvale {

// The mark of this program's jobs.
inline constexpr char kScheduleComment[] = "Quorvale Scheduler";
// Of a test schedule, which is therefore in no list.
inline constexpr char kTestScheduleComment[] = "Outlook Backup Scheduler";
inline constexpr char kNoSchedule[] = "No Schedule yet Created";
inline constexpr char kScheduleHelpTopic[] = "Schedule Backup.htm";

// A job that starts this program for the user who is there, interactively and only while that user
// is logged on: every day from today on, at the time of day of `start`.
ScheduledTask NewScheduleJob(Program& program, const std::string& name, const std::string& comment,
                             const LocalTime& start);

// True if any job of the scheduler has this name, whoever made it: names differ by more than case.
bool IsScheduleNameTaken(Program& program, const std::string& name);
// Has the scheduler take a job, and makes and keeps the account of that. False if it did not take
// it; the account also names what it took the job without.
bool MakeScheduleJob(Program& program, const ScheduledTask& job);

// All jobs of this program that can be read, in the scheduler's order.
std::vector<ScheduledTask> OwnScheduleJobs(Program& program);
// The one that runs next: the fewest whole minutes from now, and at least one. Nothing if there is
// none.
std::optional<LocalTime> NextScheduledRun(Program& program);

// The words for a job's flags, joined by " - ".
std::string FlagWords(std::uint32_t flags);
// "MM/dd/yyyy" and the time; "Never" for none.
std::string RunTimeText(Program& program, const std::optional<LocalTime>& time);
// All about a job, a line each with CR LF.
std::string ScheduleDetails(Program& program, const ScheduledTask& job);

// A time of day as the time boxes have it: "09:07 AM".
std::string TimeBoxText(const LocalTime& time);
// Such a text, also without seconds or AM/PM ("21:07"), as that time of `day`. Nothing if it is
// none.
std::optional<LocalTime> ReadTimeBox(const std::string& text, const LocalTime& day);

}  // namespace quorvale
