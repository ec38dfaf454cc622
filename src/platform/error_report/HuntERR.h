// Turns an error into a report of several lines that grows on its way outward: each procedure that
// joins in adds one line with its name and arguments, and gives back the database work it holds.
//
//   try {
//     CopyAll(from, to);
//   } catch (...) {
//     errors.Take(std::current_exception());
//     errors.ErrorIn("Copier.Run(from, to)", {from, to});  // raises the report to the caller
//   }
//
// It is for errors that nothing else has caught: core/program/unexpected_error.h, which the two
// entry points use, is its only user. Of the parts that the design gives it, nothing in the program
// uses the flags for transactions and for the web request (kSetAbort, kDisableCommit, kWebInfo),
// Check, and the objects that a handler may leave in ErrDbObject and ErrHeldObjects; only the tests
// reach those.
//
// This room is this class. It stands on the error itself (base/run_time_error.h, which the seam
// uses too), on late-bound objects (platform/late_bound.h, which the Windows binding makes real)
// and on the system's facts, and knows no form and no product. Start reading at ErrorIn.
//
// There is one error at a time: between the catch and ErrorIn nothing may pump messages. The
// database is known by late-bound objects alone.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/run_time_error.h"
#include "platform/late_bound.h"
#include "platform/system_info.h"

namespace quorvale {

// What ErrorIn does beside reporting: the sum of these.
namespace error_flag {
inline constexpr int kRaise = 1;           // hand the error on to the caller when done
inline constexpr int kCallStack = 2;       // report it, with a line for this procedure
inline constexpr int kSetAbort = 4;        // of the transaction object
inline constexpr int kRollback = 8;        // RollbackTrans of the connection
inline constexpr int kDisableCommit = 16;  // of the transaction object
inline constexpr int kWebInfo = 32;        // tell of the web request
inline constexpr int kCloseConnection = 64;
}  // namespace error_flag

// The error without a number of its own.
inline constexpr std::int32_t kGeneralError = static_cast<std::int32_t>(0x8004144E);
// Errors of the application's own: nothing is added to their description.
inline constexpr std::int32_t kFirstApplicationError = -2147217307;
inline constexpr std::int32_t kLastApplicationError = -2147216307;

// An argument as a call stack shows it.
struct ErrEmpty {};
struct ErrNull {};
struct ErrArray {};
using ErrArg = std::variant<ErrEmpty, ErrNull, ErrArray, bool, std::int64_t, double, std::string,
                            LocalTime, LateObject>;

// A name and a value of it, for the line of released objects. ErrorIn lets the object go.
struct HeldObject {
  std::string name;
  LateObject* object = nullptr;
};

enum class StepAnswer { kRetry, kNextCaller, kNoMoreStops };

// What a developer may switch on. Everything is off in a new one.
struct DeveloperSwitch {
  // Step mode: asks at each error what to do with it.
  std::function<StepAnswer(const std::string& question)> ask;
  // Takes a text behind those that the report file "Errors.txt" holds. False if it could not.
  std::function<bool(const std::string& text)> append_to_report_file;
  // How a database is reached that takes reports in the column "Report" of its table "Errors"; ""
  // for none.
  std::string report_database;
  // The entry point hands crashes to SysExcHandler.
  bool reports_crashes = false;
};

inline constexpr char kReportFileName[] = "Errors.txt";

class HuntERR {
 public:
  // `objects`: null on a system without late-bound objects.
  HuntERR(SystemInfo& system, std::string application, std::string version,
          LateBinding* objects = nullptr)
      : system_(system),
        application_(std::move(application)),
        version_(std::move(version)),
        objects_(objects) {}

  // The run-time's error object: what was caught and not yet handed on.
  RunTimeError Err;
  // Fills it from an exception. One that nobody can read becomes the general error.
  void Take(const std::exception_ptr& caught);

  // The error being handled.
  std::int32_t ErrNum = 0;
  std::string ErrSource;
  std::string ErrDescription;
  std::int32_t ErrLine = 0;
  std::string ErrHelpFile;
  std::int32_t ErrHelpContext = 0;
  std::int32_t ErrLastDll = 0;
  bool ErrPreserved = false;  // an error is stored and not yet handed on
  std::string ErrReport;      // as far as it is built
  std::string ErrPrefix;      // set by a handler: stands before the next report
  // Set by a handler that lets its own connection go before it calls ErrorIn.
  LateObject ErrDbObject;
  std::string ErrEnvNote;  // set by anybody: a note for the next line of the call stack
  // Set by a handler: objects that ErrorIn lets go.
  std::vector<HeldObject> ErrHeldObjects;
  // After ErrorIn: the developer wants the operation again, and nothing was raised.
  bool ErrRetry = false;

  // Saves the run-time's error; an error that is saved already stays. The first call of a handler
  // that does anything before ErrorIn.
  void ErrPreserve();
  // Writes the saved error back into the run-time's error object.
  void ErrRestore();

  // Reports the error in the run-time's error object and returns the report. `method` may name its
  // arguments: "Copier.Run(from, to)". With kRaise it throws RaisedError instead of returning.
  // `environment_names` are names with commas between, one for each value.
  std::string ErrorIn(const std::string& method, const std::vector<ErrArg>& arguments = {},
                      int flags = error_flag::kRaise | error_flag::kCallStack,
                      const LateObject& database = nullptr,
                      const std::string& environment_names = "",
                      const std::vector<ErrArg>& environment_values = {},
                      const LateObject& transaction = nullptr);

  // Throws a RaisedError of "HuntERR.Check" unless the condition holds.
  static void Check(bool condition, std::int32_t number, const std::string& description);

  DeveloperSwitch developer;
  // Keeps a report in the database, or else in the report file. False if neither took it.
  bool SaveReport(const std::string& report);
  // Reports a crash that no handler can catch: the system's number of it and where it happened.
  // Keeps the report and returns it.
  std::string SysExcHandler(std::uint32_t code, std::uint64_t address);

  // "{Array}", "{Empty}", "{Null}", texts in single quotes, "{?}" for what cannot be shown.
  static std::string FormatArg(const ErrArg& value);
  // The text, filled to `width` characters; a longer one stays as it is.
  static std::string PadRight(const std::string& text, std::size_t width, char fill = ' ');

 private:
  bool StoppedForRetry();
  void BuildReport(const std::string& method, int flags, const LateObject& database);
  std::string Header(const std::string& method);
  std::string ApiErrorLine();
  std::string AdoVersion();
  void AddAdoSection(const LateObject& database);
  std::string WebSection();
  void AddStackEntry(const std::string& method, const std::vector<ErrArg>& arguments,
                     const std::string& environment_names,
                     const std::vector<ErrArg>& environment_values);
  void RunTransactionStep(int flags, const LateObject& transaction);
  void AddCall(const char* line, const char* attempt, const LateObject& object, const char* method);
  void ReleaseObjects();
  bool SaveInDatabase(const std::string& report);

  SystemInfo& system_;
  const std::string application_;
  const std::string version_;
  LateBinding* const objects_;
  LateObject connection_;              // of the error being handled
  bool connection_preserved_ = false;  // it came from ErrDbObject
  std::string unreadable_;             // why the run-time's error could not be read
};

}  // namespace quorvale
