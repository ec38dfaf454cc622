#include "platform/error_report/HuntERR.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <optional>

#include "base/text.h"
#include "platform/error_report/report_text.h"

namespace quorvale {
namespace {

using namespace report_text;  // this file makes a report of them

constexpr char kOwnSource[] = "HuntERR.ErrorIn";
constexpr char kCallStack[] = "  Call Stack: ";
constexpr char kNoObject[] = "Object variable not set";
constexpr char kUnknownError[] = "Unknown error";
constexpr std::size_t kStackWidth = 100;
constexpr std::int32_t kOutOfMemory = 7;
// The system's "no environment variable of this name", which hides behind many calls that worked.
constexpr std::int32_t kNoSuchVariable = 203;

// What the state of a connection is made of.
constexpr int kStateOpen = 1;
constexpr int kStateConnecting = 2;
constexpr int kStateExecuting = 4;
constexpr int kStateFetching = 8;

constexpr char kHeader[] =
    "%Descr% %nl%"
    "  Time='%Time%' App='%App%:%Ver%' ADO-version='%ADOVersion%' Computer='%Comp%' %nl%"
    "  Method: %MethodName% %nl%"
    "  Number: %ErrNum% = &H%ErrHex% = vbObjectError %ErrNumRel1% = ERRMAP_APP_FIRST %ErrNumRel2% "
    "%ErrStd%%nl%"
    "  Source: %Source% %nl%"
    "  Description: %Descr%%nl%";

constexpr char kWebInfo[] =
    "%nl%  Web Info: %nl%"
    "    RequestMethod='%RequestMethod%'%nl%"
    "    QueryString: '%WebServer%%URL%%QS%' %nl%"
    "    FormData:    '%FormData%' %nl%"
    "    Cookies:     '%Cookies%";

// A step of the report; what fails in it is left out.
template <class Step>
void Guarded(const Step& step) {
  try {
    step();
  } catch (...) {
    // The report goes on without this part of it.
  }
}

// The object through which a database object reaches its database; null if it is none.
LateObject ConnectionOf(const LateObject& database) {
  if (database == nullptr) return nullptr;
  const std::string kind = database->TypeName();
  if (kind == "Connection") return database;
  if (kind == "Command" || kind == "Recordset") return ObjectOf(database->Get("ActiveConnection"));
  return nullptr;
}

int StateOf(const LateObject& connection) { return NumberOf(connection->Get("State")); }

std::string StateWords(int state) {
  std::string words = (state & kStateOpen) != 0 ? "adStateOpen" : "adStateClosed";
  if ((state & kStateConnecting) != 0) words += " + adStateConnecting";
  if ((state & kStateExecuting) != 0) words += " + adStateExecuting";
  if ((state & kStateFetching) != 0) words += " + adStateFetching";
  return words;
}

}  // namespace

// --- The error being handled --------------------------------------------------------------------

void HuntERR::Take(const std::exception_ptr& caught) {
  Err = RunTimeError();
  unreadable_.clear();
  if (caught == nullptr) return;
  try {
    std::rethrow_exception(caught);
  } catch (const RaisedError& raised) {
    Err = raised.error;
  } catch (const std::bad_alloc&) {
    Err.number = kOutOfMemory;
    Err.source = application_;
    Err.description = "Out of memory";
  } catch (const std::exception& error) {
    Err.number = kGeneralError;
    Err.source = application_;
    Err.description = error.what();
  } catch (...) {
    Err.number = kGeneralError;
    Err.description = kUnknownError;
    unreadable_ = "it is of no kind that this program knows";
  }
}

void HuntERR::ErrPreserve() {
  if (ErrPreserved) return;
  ErrNum = Err.number;
  ErrSource = Err.source;
  ErrDescription = Err.description;
  ErrLine = Err.line;
  ErrHelpFile = Err.help_file;
  ErrHelpContext = Err.help_context;
  ErrLastDll = Err.last_dll_error;
  ErrPreserved = true;
}

void HuntERR::ErrRestore() {
  Err.number = ErrNum;
  Err.source = ErrSource;
  Err.description = ErrDescription;
  Err.line = ErrLine;
  Err.help_file = ErrHelpFile;
  Err.help_context = ErrHelpContext;
  Err.last_dll_error = ErrLastDll;
}

std::string HuntERR::ErrorIn(const std::string& method, const std::vector<ErrArg>& arguments,
                             int flags, const LateObject& database,
                             const std::string& environment_names,
                             const std::vector<ErrArg>& environment_values,
                             const LateObject& transaction) {
  ErrRetry = false;
  if (Err.number == 0 && !ErrPreserved) {
    Err.number = kGeneralError;
    Err.description = std::string("ErrorIn: Error information was lost. ") +
                      "To fix: call ErrPreserve before doing anything in error handler.";
  }
  ErrPreserve();
  connection_ = nullptr;
  connection_preserved_ = database == nullptr && ErrDbObject != nullptr;
  if (!connection_preserved_) ErrDbObject = database;
  Guarded([&] { connection_ = ConnectionOf(ErrDbObject); });

  ErrReport.clear();
  const bool is_application_error =
      ErrNum >= kFirstApplicationError && ErrNum <= kLastApplicationError;
  const bool reports = (flags & error_flag::kCallStack) != 0 && !is_application_error;
  const bool retries = StoppedForRetry();
  if (reports) {
    if (ErrSource == kOwnSource) {
      ErrReport = ErrDescription;
    } else {
      BuildReport(method, flags, ErrDbObject);
    }
    Guarded([&] { AddStackEntry(method, arguments, environment_names, environment_values); });
  }
  RunTransactionStep(flags, transaction);
  ReleaseObjects();
  if (reports) {
    ErrSource = kOwnSource;
    ErrDescription = ErrReport;
  }
  ErrDbObject = nullptr;
  connection_ = nullptr;
  ErrPrefix.clear();
  unreadable_.clear();
  ErrRestore();
  ErrPreserved = false;
  if (retries) {
    ErrRetry = true;
    Err = RunTimeError();
  } else if ((flags & error_flag::kRaise) != 0) {
    const RunTimeError raised = std::exchange(Err, RunTimeError());
    throw RaisedError(raised);
  }
  return ErrReport;
}

// --- Report -------------------------------------------------------------------------------------

void HuntERR::BuildReport(const std::string& method, int flags, const LateObject& database) {
  ErrReport = ErrPrefix;
  Guarded([&] { ErrReport += Header(method); });
  if (!unreadable_.empty()) {
    ErrReport += "    ErrorIn failed to extract error information: " + unreadable_ + kLineEnd;
  }
  Guarded([&] { ErrReport += ApiErrorLine(); });
  if (database != nullptr) AddAdoSection(database);
  if ((flags & error_flag::kWebInfo) != 0) Guarded([&] { ErrReport += WebSection(); });
}

std::string HuntERR::Header(const std::string& method) {
  return Fill(kHeader, {{"nl", kLineEnd},
                        {"Descr", ErrDescription},
                        {"Time", TimeText(system_.Now())},
                        {"App", application_},
                        {"Ver", version_},
                        {"ADOVersion", AdoVersion()},
                        {"Comp", system_.ComputerName()},
                        {"MethodName", MethodOf(method).name},
                        {"ErrNum", std::to_string(ErrNum)},
                        {"ErrHex", Hex(static_cast<std::uint32_t>(ErrNum))},
                        {"ErrNumRel1", Relative(ErrNum, kFirstObjectError)},
                        {"ErrNumRel2", Relative(ErrNum, kGeneralError)},
                        {"ErrStd", ErrNum == kGeneralError ? "= ERR_GENERAL" : ""},
                        {"Source", ErrSource}});
}

std::string HuntERR::ApiErrorLine() {
  if (ErrLastDll == 0 || ErrLastDll == kNoSuchVariable) return "";
  return "  API Error: (" + std::to_string(ErrLastDll) + ") " +
         WithoutLineBreaks(system_.ErrorText(ErrLastDll)) + kLineEnd;
}

std::string HuntERR::AdoVersion() {
  std::string version;
  Guarded([&] {
    const LateObject probe = objects_ != nullptr ? objects_->Create("ADODB.Connection") : nullptr;
    if (probe != nullptr) version = TextOf(probe->Get("Version"));
  });
  return version;
}

void HuntERR::AddAdoSection(const LateObject& database) {
  ErrReport += std::string("  ADO Info: ") + kLineEnd;
  ErrReport += "    ADO Version:   " + AdoVersion() + kLineEnd;
  Guarded([&] {
    ErrReport += "    DbObject:      " + database->TypeName() +
                 (connection_preserved_ ? " (Connection object was preserved internally)" : "") +
                 kLineEnd;
  });
  if (connection_ == nullptr) return;
  Guarded([&] {
    ErrReport +=
        "    Conn. String: '" + TextOf(connection_->Get("ConnectionString")) + "'" + kLineEnd;
  });
  Guarded(
      [&] { ErrReport += "    Conn. State:   " + StateWords(StateOf(connection_)) + kLineEnd; });
  Guarded([&] {
    const LateObject errors = ObjectOf(connection_->Get("Errors"));
    if (errors == nullptr) return;
    for (const LateValue& member : errors->Members()) {
      const LateObject error = ObjectOf(member);
      if (error == nullptr) continue;
      ErrReport += "    Error:         " + TextOf(error->Get("Description")) + kLineEnd;
    }
  });
}

std::string HuntERR::WebSection() {
  const LateObject request = objects_ != nullptr ? objects_->Request() : nullptr;
  if (request == nullptr) return "";
  const auto variable = [&request](const char* name) {
    std::string text;
    Guarded([&] { text = TextOf(request->Get("ServerVariables", {std::string(name)})); });
    return text;
  };
  const auto property = [&request](const char* name) {
    std::string text;
    Guarded([&] { text = TextOf(request->Get(name)); });
    return text;
  };
  const std::string query = variable("QUERY_STRING");
  return Fill(kWebInfo, {{"nl", kLineEnd},
                         {"RequestMethod", variable("REQUEST_METHOD")},
                         {"WebServer", variable("SERVER_NAME")},
                         {"URL", variable("URL")},
                         {"QS", query.empty() ? "" : "?" + query},
                         {"FormData", property("Form")},
                         {"Cookies", property("Cookies")}}) +
         kLineEnd;
}

void HuntERR::AddStackEntry(const std::string& method, const std::vector<ErrArg>& arguments,
                            const std::string& environment_names,
                            const std::vector<ErrArg>& environment_values) {
  if (!Contains(ErrReport, kCallStack)) {
    ErrReport += PadRight(kCallStack, kStackWidth, '-') + kLineEnd;
  }
  const Method procedure = MethodOf(method);
  std::string list, below;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i != 0) list += ", ";
    list += Listed(NameAt(procedure.argument_names, i), arguments[i], &below);
  }
  ErrReport += "- " + procedure.name + "(" + list + ")";
  if (ErrLine != 0) ErrReport += "  at Line " + std::to_string(ErrLine);
  ErrReport += kLineEnd + below;

  if (!environment_values.empty()) {
    const std::vector<std::string> names = Names(environment_names);
    std::string values, lines;
    for (std::size_t i = 0; i < environment_values.size(); ++i) {
      const std::string name = NameAt(names, i);
      if (i != 0) values += ", ";
      values += name + "=" + Listed(name, environment_values[i], &lines);
    }
    ErrReport += "    Env: " + values + kLineEnd + lines;
  }
  if (!ErrEnvNote.empty()) ErrReport += "    " + ErrEnvNote + kLineEnd;
  ErrEnvNote.clear();
}

// --- Database work ------------------------------------------------------------------------------

// Calls a method and tells what came of it.
void HuntERR::AddCall(const char* line, const char* attempt, const LateObject& object,
                      const char* method) {
  std::string outcome = "succeeded";
  try {
    if (object == nullptr) throw LateBoundError(kNoObject);
    object->Call(method);
  } catch (const std::exception& error) {
    outcome = std::string("failed with error '") + error.what() + "'";
  }
  ErrReport += std::string("    ") + line + ": " + attempt + outcome + kLineEnd;
}

void HuntERR::RunTransactionStep(int flags, const LateObject& transaction) {
  LateObject context;
  Guarded([&] { context = objects_ != nullptr ? objects_->ObjectContext() : nullptr; });
  if ((flags & error_flag::kSetAbort) != 0) {
    if (transaction != nullptr) {
      AddCall("Transaction", "Attempt to call TransControlObject.SetAbort: ", transaction,
              "SetAbort");
    } else {
      AddCall("Transaction", "Attempt to call ObjectContext.SetAbort ", context, "SetAbort");
    }
  }
  if ((flags & error_flag::kRollback) != 0) {
    bool closed = false;
    Guarded([&] { closed = connection_ != nullptr && (StateOf(connection_) & kStateOpen) == 0; });
    if (closed) {
      ErrReport += std::string("    Transaction: ") +
                   "Could not call RollbackTrans: Connection is closed " + kLineEnd;
    } else {
      AddCall("Transaction", "Attempt to call RollbackTrans ", connection_, "RollbackTrans");
    }
  }
  if ((flags & error_flag::kDisableCommit) != 0) {
    AddCall("Transaction", "Attempt to call ObjectContext.DisableCommit ",
            context != nullptr ? context : transaction, "DisableCommit");
  }
  if ((flags & error_flag::kCloseConnection) != 0) {
    AddCall("Connection", "Attempt to call Close ", connection_, "Close");
  }
}

void HuntERR::ReleaseObjects() {
  std::string names;
  for (const HeldObject& held : ErrHeldObjects) {
    if (held.object != nullptr) held.object->reset();
    names += (names.empty() ? "" : ", ") + held.name;
  }
  if (!ErrHeldObjects.empty()) ErrReport += "    Released Objects: " + names + kLineEnd;
  ErrHeldObjects.clear();
}

// --- For developers -----------------------------------------------------------------------------

void HuntERR::Check(bool condition, std::int32_t number, const std::string& description) {
  if (condition) return;
  RunTimeError error;
  error.number = number;
  error.source = "HuntERR.Check";
  error.description = description;
  throw RaisedError(error);
}

bool HuntERR::StoppedForRetry() {
  if (!developer.ask) return false;
  const std::string question =
      ReplaceAll("Stopped on error: $Descr$||", "$Descr$", FirstLine(ErrDescription)) +
      "Do you want to retry the operation in step mode?|" +
      "Click YES to retry, NO to move to the caller, CANCEL for no more stops";
  switch (developer.ask(ReplaceAll(question, "|", kLineEnd))) {
    case StepAnswer::kRetry:
      return true;
    case StepAnswer::kNoMoreStops:
      developer.ask = nullptr;
      break;
    case StepAnswer::kNextCaller:
      break;
  }
  return false;
}

bool HuntERR::SaveInDatabase(const std::string& report) {
  try {
    const LateObject connection =
        objects_ != nullptr ? objects_->Create("ADODB.Connection") : nullptr;
    if (connection == nullptr) return false;
    connection->Call("Open", {developer.report_database});
    connection->Call("Execute", {"INSERT INTO Errors (Report) VALUES ('" +
                                 ReplaceAll(report, "'", "''") + "')"});
    connection->Call("Close");
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool HuntERR::SaveReport(const std::string& report) {
  std::string note;
  if (!developer.report_database.empty()) {
    if (SaveInDatabase(report)) return true;
    note = std::string("Failed to save error report to database. ") + kLineEnd;
  }
  if (!developer.append_to_report_file) return false;
  return developer.append_to_report_file(note + report + kLineEnd);
}

std::string HuntERR::SysExcHandler(std::uint32_t code, std::uint64_t address) {
  char place[32];
  std::snprintf(place, sizeof(place), "%llX", static_cast<unsigned long long>(address));
  Err = RunTimeError();
  Err.number = static_cast<std::int32_t>(code);
  Err.source = "HuntERR.SysExcHandler";
  Err.description = CrashName(code) + " at &H" + place;
  ErrPreserved = false;
  const std::string report = ErrorIn("HuntERR.SysExcHandler", {}, error_flag::kCallStack);
  SaveReport(report);
  return report;
}

// --- Texts --------------------------------------------------------------------------------------

std::string HuntERR::FormatArg(const ErrArg& value) {
  if (std::holds_alternative<ErrEmpty>(value)) return "{Empty}";
  if (std::holds_alternative<ErrNull>(value)) return "{Null}";
  if (std::holds_alternative<ErrArray>(value)) return "{Array}";
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "True" : "False";
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return "'" + *text + "'";
  if (const auto* time = std::get_if<LocalTime>(&value)) return TimeText(*time);
  if (const auto* fraction = std::get_if<double>(&value)) {
    char text[64];
    std::snprintf(text, sizeof(text), "%.15g", *fraction);
    return text;
  }
  return "{?}";
}

std::string HuntERR::PadRight(const std::string& text, std::size_t width, char fill) {
  return text.size() < width ? text + std::string(width - text.size(), fill) : text;
}

}  // namespace quorvale
