// The error report, compared whole, line by line.
#include "platform/error_report/HuntERR.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "base/text.h"
#include "support/memory_platform.h"

namespace quorvale {
namespace {

using namespace error_flag;

class ReportSystem : public MemorySystem {
 public:
  LocalTime Now() override { return {2026, 3, 5, 9, 7, 1, 5}; }
  std::string ErrorText(int number) override {
    return number == 5 ? "Access is\r\n denied.\r\n" : "";
  }
};

// An object whose properties and methods a test arranges.
class FakeObject : public LateBound {
 public:
  explicit FakeObject(std::string kind) : kind_(std::move(kind)) {}

  std::string TypeName() override { return kind_; }
  LateValue Get(const std::string& property, const std::vector<LateValue>& arguments) override {
    const std::string name = arguments.empty() ? property : property + "/" + TextOf(arguments[0]);
    const auto found = properties.find(name);
    if (found == properties.end()) throw LateBoundError("no " + name);
    return found->second;
  }
  void Set(const std::string& property, const LateValue& value) override {
    properties[property] = value;
  }
  LateValue Call(const std::string& method, const std::vector<LateValue>& arguments) override {
    std::string call = method;
    for (const LateValue& argument : arguments) call += "|" + TextOf(argument);
    calls.push_back(call);
    const auto refusal = refusals.find(method);
    if (refusal != refusals.end()) throw LateBoundError(refusal->second);
    return {};
  }
  std::vector<LateValue> Members() override { return members; }

  std::map<std::string, LateValue> properties;
  std::map<std::string, std::string> refusals;  // by method
  std::vector<LateValue> members;
  std::vector<std::string> calls;

 private:
  const std::string kind_;
};

using Fake = std::shared_ptr<FakeObject>;

Fake Object(const std::string& kind) { return std::make_shared<FakeObject>(kind); }

class FakeBinding : public LateBinding {
 public:
  LateObject Create(const std::string& name) override {
    return name == "ADODB.Connection" ? created : nullptr;
  }
  LateObject ObjectContext() override { return context; }
  LateObject Request() override { return request; }

  Fake created, context, request;
};

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

const std::string kStack = "  Call Stack: " + std::string(86, '-');

class HuntERRTest : public testing::Test {
 protected:
  HuntERRTest() {
    binding_.created = Object("Connection");
    binding_.created->properties["Version"] = std::string("2.8");
  }

  void Fail(std::int32_t number, const std::string& description,
            const std::string& source = "Quorvale") {
    errors_.Err = RunTimeError();
    errors_.Err.number = number;
    errors_.Err.source = source;
    errors_.Err.description = description;
  }
  // A connection with this state and the descriptions of two errors.
  static Fake Connection(int state) {
    const Fake connection = Object("Connection");
    connection->properties["ConnectionString"] = std::string("Provider=X");
    connection->properties["State"] = state;
    const Fake list = Object("Errors");
    for (const char* text : {"Lock timed out", "Row is gone"}) {
      const Fake error = Object("Error");
      error->properties["Description"] = std::string(text);
      list->members.push_back(LateObject(error));
    }
    connection->properties["Errors"] = LateObject(list);
    return connection;
  }
  // Reports and expects these lines behind the header of error 61.
  void ExpectBehindHeader(int flags, const std::vector<std::string>& lines,
                          const LateObject& database = nullptr,
                          const LateObject& transaction = nullptr) {
    Fail(61, "Disk full");
    const std::string report =
        errors_.ErrorIn("Copier.Run", {}, flags, database, "", {}, transaction);
    ASSERT_TRUE(report.starts_with(Header61())) << report;
    EXPECT_EQ(report.substr(Header61().size()), Lines(lines));
  }
  static std::string Header61() {
    return Lines(
        {"Disk full ",
         "  Time='03/05/26 09:07:01' App='Quorvale:1.2.3' ADO-version='2.8' "
         "Computer='OFFICE' ",
         "  Method: Copier.Run ",
         "  Number: 61 = &H3D = vbObjectError + 2147221565 = ERRMAP_APP_FIRST + 2147216367 ",
         "  Source: Quorvale ", "  Description: Disk full"});
  }

  ReportSystem system_;
  FakeBinding binding_;
  HuntERR errors_{system_, "Quorvale", "1.2.3", &binding_};
};

// --- Header -------------------------------------------------------------------------------------

TEST_F(HuntERRTest, TheWholeReportOfASimpleError) {
  Fail(61, "Disk full");
  errors_.Err.line = 120;
  EXPECT_EQ(errors_.ErrorIn("Copier.Run(from, count)", {std::string("C:\\a"), 3}, kCallStack),
            Header61() + Lines({kStack, "- Copier.Run('C:\\a', 3)  at Line 120"}));
  EXPECT_EQ(kStack.size(), 100u);
}

TEST_F(HuntERRTest, TheGeneralErrorIsNamed) {
  Fail(kGeneralError, "Something");
  const std::string report = errors_.ErrorIn("A", {}, kCallStack);
  EXPECT_TRUE(Contains(report,
                       "  Number: -2147216306 = &H8004144E = vbObjectError + 5198 = "
                       "ERRMAP_APP_FIRST + 0 = ERR_GENERAL\r\n"))
      << report;
}

TEST_F(HuntERRTest, ANumberBelowTheBasesHasAMinusSign) {
  Fail(-2147221505, "Low");
  const std::string report = errors_.ErrorIn("A", {}, kCallStack);
  EXPECT_TRUE(Contains(report,
                       "  Number: -2147221505 = &H8003FFFF = vbObjectError - 1 = "
                       "ERRMAP_APP_FIRST - 5199 \r\n"))
      << report;
}

TEST_F(HuntERRTest, WithoutLateBoundObjectsTheDatabaseVersionIsEmpty) {
  HuntERR errors(system_, "Quorvale", "1.2.3");
  errors.Err.number = 5;
  EXPECT_TRUE(Contains(errors.ErrorIn("A", {}, kCallStack), " ADO-version='' "));
  binding_.created->properties.clear();
  Fail(5, "x");
  EXPECT_TRUE(Contains(errors_.ErrorIn("A", {}, kCallStack), " ADO-version='' "));
}

TEST_F(HuntERRTest, APerCentSignInADescriptionStandsAsItIs) {
  Fail(5, "100%Source% of %nl%");
  EXPECT_TRUE(errors_.ErrorIn("A", {}, kCallStack).starts_with("100%Source% of %nl% \r\n"));
}

TEST_F(HuntERRTest, ThePrefixStandsInFrontOfOneReport) {
  Fail(61, "Disk full");
  errors_.ErrPrefix = "On the night run: ";
  EXPECT_TRUE(errors_.ErrorIn("A", {}, kCallStack).starts_with("On the night run: Disk full \r\n"));
  Fail(61, "Disk full");
  EXPECT_TRUE(errors_.ErrorIn("A", {}, kCallStack).starts_with("Disk full \r\n"));
}

TEST_F(HuntERRTest, TheFailedSystemCallHasItsLineWithoutLineBreaks) {
  Fail(61, "Disk full");
  errors_.Err.last_dll_error = 5;
  EXPECT_EQ(errors_.ErrorIn("Copier.Run", {}, kCallStack),
            Header61() + Lines({"  API Error: (5) Access is denied.", kStack, "- Copier.Run()"}));
  for (const int harmless : {0, 203}) {
    Fail(61, "Disk full");
    errors_.Err.last_dll_error = harmless;
    EXPECT_EQ(errors_.ErrorIn("Copier.Run", {}, kCallStack),
              Header61() + Lines({kStack, "- Copier.Run()"}));
  }
}

// --- What went before ---------------------------------------------------------------------------

TEST_F(HuntERRTest, AnErrorThatWasLostIsReportedAsSuch) {
  const std::string report = errors_.ErrorIn("A", {}, kCallStack);
  EXPECT_TRUE(report.starts_with(
      "ErrorIn: Error information was lost. To fix: call ErrPreserve before doing anything in "
      "error handler. \r\n"))
      << report;
  EXPECT_TRUE(Contains(report, "= ERR_GENERAL"));
}

TEST_F(HuntERRTest, APreservedErrorOutlivesWhatTheHandlerDoes) {
  Fail(61, "Disk full");
  errors_.ErrPreserve();
  EXPECT_TRUE(errors_.ErrPreserved);
  Fail(70, "The clean-up failed");
  errors_.ErrPreserve();
  errors_.Err = RunTimeError();
  EXPECT_TRUE(errors_.ErrorIn("A", {}, kCallStack).starts_with("Disk full \r\n"));
  EXPECT_FALSE(errors_.ErrPreserved);
}

TEST_F(HuntERRTest, RestoreGivesTheSavedErrorBack) {
  Fail(61, "Disk full");
  errors_.Err.help_file = "q.chm";
  errors_.Err.help_context = 7;
  errors_.Err.line = 9;
  errors_.Err.last_dll_error = 112;
  errors_.ErrPreserve();
  errors_.Err = RunTimeError();
  errors_.ErrRestore();
  EXPECT_EQ(errors_.Err.number, 61);
  EXPECT_EQ(errors_.Err.source, "Quorvale");
  EXPECT_EQ(errors_.Err.description, "Disk full");
  EXPECT_EQ(errors_.Err.help_file, "q.chm");
  EXPECT_EQ(errors_.Err.help_context, 7);
  EXPECT_EQ(errors_.Err.line, 9);
  EXPECT_EQ(errors_.Err.last_dll_error, 112);
}

TEST_F(HuntERRTest, ApplicationErrorsKeepTheirDescription) {
  for (const std::int32_t number : {kFirstApplicationError, kLastApplicationError}) {
    Fail(number, "Choose a name first", "Job");
    EXPECT_EQ(errors_.ErrorIn("A", {}, kCallStack), "");
    EXPECT_EQ(errors_.Err.number, number);
    EXPECT_EQ(errors_.Err.description, "Choose a name first");
    EXPECT_EQ(errors_.Err.source, "Job");
  }
  for (const std::int32_t number : {kFirstApplicationError - 1, kLastApplicationError + 1}) {
    Fail(number, "Choose a name first", "Job");
    EXPECT_NE(errors_.ErrorIn("A", {}, kCallStack), "");
    EXPECT_EQ(errors_.Err.source, "HuntERR.ErrorIn");
  }
}

TEST_F(HuntERRTest, AnApplicationErrorStillRollsItsWorkBack) {
  const Fake connection = Connection(1);
  Fail(kLastApplicationError, "No");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kCallStack | kRollback, connection),
            "    Transaction: Attempt to call RollbackTrans succeeded\r\n");
  EXPECT_EQ(connection->calls, std::vector<std::string>{"RollbackTrans"});
  EXPECT_EQ(errors_.Err.description, "No");
}

// --- On the way outward -------------------------------------------------------------------------

TEST_F(HuntERRTest, TheReportGrowsByOneLineForEachCaller) {
  Fail(61, "Disk full");
  errors_.Err.help_file = "q.chm";
  std::string report;
  try {
    try {
      errors_.ErrorIn("Copier.Run", {true});
      ADD_FAILURE() << "nothing was raised";
    } catch (...) {
      errors_.Take(std::current_exception());
      errors_.ErrorIn("Job.Start(name)", {std::string("My mail")});
      ADD_FAILURE() << "nothing was raised";
    }
  } catch (const RaisedError& raised) {
    report = raised.error.description;
    EXPECT_EQ(raised.error.number, 61);
    EXPECT_EQ(raised.error.source, "HuntERR.ErrorIn");
    EXPECT_EQ(raised.error.help_file, "q.chm");
  }
  EXPECT_EQ(report, Header61() + Lines({kStack, "- Copier.Run(True)", "- Job.Start('My mail')"}));
  EXPECT_EQ(errors_.Err.number, 0);
}

TEST_F(HuntERRTest, WithoutTheStackFlagTheErrorGoesOnUnchanged) {
  Fail(61, "Disk full");
  try {
    errors_.ErrorIn("A", {}, kRaise);
    FAIL() << "nothing was raised";
  } catch (const RaisedError& raised) {
    EXPECT_EQ(raised.error.description, "Disk full");
    EXPECT_EQ(raised.error.source, "Quorvale");
  }
}

TEST_F(HuntERRTest, WithoutTheRaiseFlagTheRunTimeHoldsTheReport) {
  Fail(61, "Disk full");
  const std::string report = errors_.ErrorIn("A", {}, kCallStack);
  EXPECT_EQ(errors_.Err.number, 61);
  EXPECT_EQ(errors_.Err.description, report);
  EXPECT_EQ(errors_.Err.source, "HuntERR.ErrorIn");
}

TEST_F(HuntERRTest, ExceptionsOfTheLibraryAreTaken) {
  errors_.Take(std::make_exception_ptr(std::runtime_error("no such thing")));
  EXPECT_EQ(errors_.Err.number, kGeneralError);
  EXPECT_EQ(errors_.Err.description, "no such thing");
  EXPECT_EQ(errors_.Err.source, "Quorvale");
  errors_.Take(std::make_exception_ptr(std::bad_alloc()));
  EXPECT_EQ(errors_.Err.number, 7);
  EXPECT_EQ(errors_.Err.description, "Out of memory");
  errors_.Take(nullptr);
  EXPECT_EQ(errors_.Err.number, 0);
}

TEST_F(HuntERRTest, AnExceptionThatNobodyCanReadIsStillReported) {
  errors_.Take(std::make_exception_ptr(42));
  EXPECT_EQ(errors_.ErrorIn("A", {}, kCallStack),
            Lines({"Unknown error ",
                   "  Time='03/05/26 09:07:01' App='Quorvale:1.2.3' ADO-version='2.8' "
                   "Computer='OFFICE' ",
                   "  Method: A ",
                   "  Number: -2147216306 = &H8004144E = vbObjectError + 5198 = ERRMAP_APP_FIRST "
                   "+ 0 = ERR_GENERAL",
                   "  Source:  ", "  Description: Unknown error",
                   "    ErrorIn failed to extract error information: it is of no kind that this "
                   "program knows",
                   kStack, "- A()"}));
}

// --- Database -----------------------------------------------------------------------------------

TEST_F(HuntERRTest, TheDatabaseSectionTellsOfTheConnection) {
  ExpectBehindHeader(kCallStack,
                     {"  ADO Info: ", "    ADO Version:   2.8", "    DbObject:      Connection",
                      "    Conn. String: 'Provider=X'", "    Conn. State:   adStateOpen",
                      "    Error:         Lock timed out", "    Error:         Row is gone", kStack,
                      "- Copier.Run()"},
                     Connection(1));
}

TEST_F(HuntERRTest, TheStateOfAConnectionIsInWords) {
  const std::map<int, std::string> states = {
      {0, "adStateClosed"},
      {1, "adStateOpen"},
      {2, "adStateClosed + adStateConnecting"},
      {5, "adStateOpen + adStateExecuting"},
      {15, "adStateOpen + adStateConnecting + adStateExecuting + adStateFetching"}};
  for (const auto& [state, words] : states) {
    Fail(61, "Disk full");
    const std::string report = errors_.ErrorIn("A", {}, kCallStack, Connection(state));
    EXPECT_TRUE(Contains(report, "    Conn. State:   " + words + "\r\n")) << report;
  }
}

TEST_F(HuntERRTest, CommandsAndRecordsetsLeadToTheirConnection) {
  for (const char* kind : {"Command", "Recordset"}) {
    const Fake object = Object(kind);
    object->properties["ActiveConnection"] = LateObject(Connection(1));
    Fail(61, "Disk full");
    const std::string report = errors_.ErrorIn("A", {}, kCallStack, object);
    EXPECT_TRUE(Contains(report, std::string("    DbObject:      ") + kind + "\r\n")) << report;
    EXPECT_TRUE(Contains(report, "    Conn. String: 'Provider=X'\r\n")) << report;
  }
}

TEST_F(HuntERRTest, AnotherObjectHasNoConnection) {
  ExpectBehindHeader(kCallStack,
                     {"  ADO Info: ", "    ADO Version:   2.8", "    DbObject:      Stream", kStack,
                      "- Copier.Run()"},
                     Object("Stream"));
}

TEST_F(HuntERRTest, AConnectionThatTheHandlerLetGoIsNamedAsPreserved) {
  errors_.ErrDbObject = Connection(1);
  Fail(61, "Disk full");
  const std::string report = errors_.ErrorIn("A", {}, kCallStack);
  EXPECT_TRUE(Contains(report,
                       "    DbObject:      Connection (Connection object was preserved "
                       "internally)\r\n    Conn. String: 'Provider=X'\r\n"))
      << report;
  EXPECT_EQ(errors_.ErrDbObject, nullptr);
}

TEST_F(HuntERRTest, WhatAConnectionDoesNotTellIsLeftOut) {
  const Fake broken = Object("Connection");
  broken->properties["State"] = 1;
  ExpectBehindHeader(kCallStack,
                     {"  ADO Info: ", "    ADO Version:   2.8", "    DbObject:      Connection",
                      "    Conn. State:   adStateOpen", kStack, "- Copier.Run()"},
                     broken);
}

// --- Transactions -------------------------------------------------------------------------------

TEST_F(HuntERRTest, TheWorkIsRolledBack) {
  const Fake connection = Connection(1);
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kRollback, connection),
            "    Transaction: Attempt to call RollbackTrans succeeded\r\n");
  EXPECT_EQ(connection->calls, std::vector<std::string>{"RollbackTrans"});
}

TEST_F(HuntERRTest, ARollbackThatFailsIsTold) {
  const Fake connection = Connection(1);
  connection->refusals["RollbackTrans"] = "No transaction is active";
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kRollback, connection),
            "    Transaction: Attempt to call RollbackTrans failed with error 'No transaction is "
            "active'\r\n");
}

TEST_F(HuntERRTest, AClosedConnectionIsNotRolledBack) {
  const Fake connection = Connection(0);
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kRollback, connection),
            "    Transaction: Could not call RollbackTrans: Connection is closed \r\n");
  EXPECT_TRUE(connection->calls.empty());
}

TEST_F(HuntERRTest, ARollbackWithoutAConnectionIsTold) {
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kRollback),
            "    Transaction: Attempt to call RollbackTrans failed with error 'Object variable not "
            "set'\r\n");
}

TEST_F(HuntERRTest, TheTransactionObjectIsAborted) {
  const Fake control = Object("TransactionContext");
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kSetAbort, nullptr, "", {}, control),
            "    Transaction: Attempt to call TransControlObject.SetAbort: succeeded\r\n");
  EXPECT_EQ(control->calls, std::vector<std::string>{"SetAbort"});
}

TEST_F(HuntERRTest, WithoutATransactionObjectTheContextOfTheProcessIsAborted) {
  binding_.context = Object("ObjectContext");
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kSetAbort | kDisableCommit),
            "    Transaction: Attempt to call ObjectContext.SetAbort succeeded\r\n"
            "    Transaction: Attempt to call ObjectContext.DisableCommit succeeded\r\n");
  EXPECT_EQ(binding_.context->calls, (std::vector<std::string>{"SetAbort", "DisableCommit"}));
  binding_.context->refusals["SetAbort"] = "Gone";
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kSetAbort),
            "    Transaction: Attempt to call ObjectContext.SetAbort failed with error 'Gone'\r\n");
}

TEST_F(HuntERRTest, TheConnectionIsClosedLast) {
  const Fake connection = Connection(1);
  ExpectBehindHeader(kCallStack | kRollback | kCloseConnection,
                     {"  ADO Info: ", "    ADO Version:   2.8", "    DbObject:      Connection",
                      "    Conn. String: 'Provider=X'", "    Conn. State:   adStateOpen",
                      "    Error:         Lock timed out", "    Error:         Row is gone", kStack,
                      "- Copier.Run()", "    Transaction: Attempt to call RollbackTrans succeeded",
                      "    Connection: Attempt to call Close succeeded"},
                     connection);
  EXPECT_EQ(connection->calls, (std::vector<std::string>{"RollbackTrans", "Close"}));
  connection->refusals["Close"] = "Busy";
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("A", {}, kCloseConnection, connection),
            "    Connection: Attempt to call Close failed with error 'Busy'\r\n");
}

TEST_F(HuntERRTest, HeldObjectsAreLetGoAndNamed) {
  LateObject rows = Object("Recordset");
  LateObject command = Object("Command");
  const std::weak_ptr<LateBound> watched = rows;
  errors_.ErrHeldObjects = {{"rows", &rows}, {"command", &command}};
  ExpectBehindHeader(kCallStack, {kStack, "- Copier.Run()", "    Released Objects: rows, command"});
  EXPECT_EQ(rows, nullptr);
  EXPECT_TRUE(watched.expired());
  EXPECT_TRUE(errors_.ErrHeldObjects.empty());
}

// --- Web ----------------------------------------------------------------------------------------

TEST_F(HuntERRTest, TheWebRequestIsToldIfThereIsOne) {
  const Fake request = Object("Request");
  request->properties = {{"ServerVariables/REQUEST_METHOD", std::string("POST")},
                         {"ServerVariables/SERVER_NAME", std::string("shop")},
                         {"ServerVariables/URL", std::string("/buy.asp")},
                         {"ServerVariables/QUERY_STRING", std::string("n=1")},
                         {"Form", std::string("a=b")},
                         {"Cookies", std::string("c=d")}};
  binding_.request = request;
  ExpectBehindHeader(
      kCallStack | kWebInfo,
      {"", "  Web Info: ", "    RequestMethod='POST'", "    QueryString: 'shop/buy.asp?n=1' ",
       "    FormData:    'a=b' ", "    Cookies:     'c=d", kStack, "- Copier.Run()"});
  ExpectBehindHeader(kCallStack, {kStack, "- Copier.Run()"});
}

TEST_F(HuntERRTest, WithoutAWebRequestThereIsNoSectionOfIt) {
  ExpectBehindHeader(kCallStack | kWebInfo, {kStack, "- Copier.Run()"});
}

// --- Call stack ---------------------------------------------------------------------------------

TEST_F(HuntERRTest, ArgumentsAreFormattedByTheirKind) {
  EXPECT_EQ(HuntERR::FormatArg(ErrEmpty()), "{Empty}");
  EXPECT_EQ(HuntERR::FormatArg(ErrNull()), "{Null}");
  EXPECT_EQ(HuntERR::FormatArg(ErrArray()), "{Array}");
  EXPECT_EQ(HuntERR::FormatArg(LateObject()), "{?}");
  EXPECT_EQ(HuntERR::FormatArg(false), "False");
  EXPECT_EQ(HuntERR::FormatArg(-12), "-12");
  EXPECT_EQ(HuntERR::FormatArg(2.5), "2.5");
  EXPECT_EQ(HuntERR::FormatArg(std::string("it's")), "'it's'");
  EXPECT_EQ(HuntERR::FormatArg(LocalTime{2026, 12, 31, 23, 59, 58, 5}), "12/31/26 23:59:58");
}

TEST_F(HuntERRTest, ATextOfFortyCharactersStaysInTheList) {
  const std::string forty(40, 'a');
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("Copier.Run(path)", {forty}, kCallStack),
            Header61() + Lines({kStack, "- Copier.Run('" + forty + "')"}));
}

TEST_F(HuntERRTest, LongTextsAndTextsWithLineBreaksStandBelowTheirLine) {
  const std::string long_text(41, 'a');
  Fail(61, "Disk full");
  EXPECT_EQ(errors_.ErrorIn("Copier.Run(path, note)",
                            {long_text, std::string("a\r\nb"), std::string("c")}, kCallStack),
            Header61() + Lines({kStack, "- Copier.Run({Text}, {Text}, 'c')", "    Value Of path:",
                                "'" + long_text + "'", "    Value Of note:", "'a", "b'"}));
}

TEST_F(HuntERRTest, AnArgumentWithoutANameIsNumbered) {
  Fail(61, "Disk full");
  EXPECT_TRUE(Contains(errors_.ErrorIn("A", {1, std::string(50, 'x')}, kCallStack),
                       "- A(1, {Text})\r\n    Value Of Arg2:\r\n"));
}

TEST_F(HuntERRTest, XmlIsIndentedLineByLine) {
  Fail(61, "Disk full");
  EXPECT_EQ(
      errors_.ErrorIn("Copier.Run(settings)",
                      {std::string("<?xml version='1.0'?>\r\n<A>\n<B>1</B>\n</A>")}, kCallStack),
      Header61() + Lines({kStack, "- Copier.Run({Text})",
                          "    Value Of settings:", "      <?xml version='1.0'?>", "      <A>",
                          "      <B>1</B>", "      </A>"}));
}

TEST_F(HuntERRTest, TheEnvironmentAndTheNoteStandBelowTheLineOnce) {
  Fail(61, "Disk full");
  errors_.ErrEnvNote = "third try";
  const std::string first = errors_.ErrorIn("Copier.Run", {}, kCallStack, nullptr, "mode, tries",
                                            {std::string("auto"), 3});
  EXPECT_EQ(first, Header61() + Lines({kStack, "- Copier.Run()", "    Env: mode='auto', tries=3",
                                       "    third try"}));
  EXPECT_EQ(errors_.ErrEnvNote, "");
  EXPECT_EQ(errors_.ErrorIn("Caller", {}, kCallStack), first + "- Caller()\r\n");
}

TEST_F(HuntERRTest, PaddingFillsToTheWidthAndCutsNothing) {
  EXPECT_EQ(HuntERR::PadRight("ab", 5), "ab   ");
  EXPECT_EQ(HuntERR::PadRight("ab", 4, '-'), "ab--");
  EXPECT_EQ(HuntERR::PadRight("abcdef", 5), "abcdef");
}

// --- For developers -----------------------------------------------------------------------------

TEST_F(HuntERRTest, StepModeAsksAndARetryRaisesNothing) {
  std::string question;
  errors_.developer.ask = [&](const std::string& text) {
    question = text;
    return StepAnswer::kRetry;
  };
  Fail(61, "Disk full\r\nor so");
  EXPECT_NO_THROW(errors_.ErrorIn("A"));
  EXPECT_EQ(question,
            "Stopped on error: Disk full\r\n\r\nDo you want to retry the operation in step "
            "mode?\r\nClick YES to retry, NO to move to the caller, CANCEL for no more stops");
  EXPECT_TRUE(errors_.ErrRetry);
  EXPECT_EQ(errors_.Err.number, 0);
}

TEST_F(HuntERRTest, StepModeGoesOnToTheCallerOrStopsNoMore) {
  StepAnswer answer = StepAnswer::kNextCaller;
  int asked = 0;
  errors_.developer.ask = [&](const std::string&) {
    ++asked;
    return answer;
  };
  Fail(61, "Disk full");
  EXPECT_THROW(errors_.ErrorIn("A"), RaisedError);
  EXPECT_FALSE(errors_.ErrRetry);
  answer = StepAnswer::kNoMoreStops;
  Fail(61, "Disk full");
  EXPECT_THROW(errors_.ErrorIn("A"), RaisedError);
  Fail(61, "Disk full");
  EXPECT_THROW(errors_.ErrorIn("A"), RaisedError);
  EXPECT_EQ(asked, 2);
}

TEST_F(HuntERRTest, ACheckThatHoldsDoesNothing) {
  EXPECT_NO_THROW(HuntERR::Check(true, 5, "x"));
  try {
    HuntERR::Check(false, 5, "The list is empty");
    FAIL() << "nothing was raised";
  } catch (const RaisedError& raised) {
    EXPECT_EQ(raised.error.number, 5);
    EXPECT_EQ(raised.error.source, "HuntERR.Check");
    EXPECT_STREQ(raised.what(), "The list is empty");
  }
}

TEST_F(HuntERRTest, AReportGoesIntoTheFileWhereThereIsNoDatabase) {
  std::string file;
  EXPECT_FALSE(errors_.SaveReport("r1"));
  errors_.developer.append_to_report_file = [&](const std::string& text) {
    file += text;
    return true;
  };
  EXPECT_TRUE(errors_.SaveReport("r1"));
  EXPECT_EQ(file, "r1\r\n");
}

TEST_F(HuntERRTest, AReportGoesIntoTheDatabaseAndIntoTheFileIfThatFails) {
  std::string file;
  errors_.developer.append_to_report_file = [&](const std::string& text) {
    file += text;
    return true;
  };
  errors_.developer.report_database = "Provider=X";
  EXPECT_TRUE(errors_.SaveReport("it's"));
  EXPECT_EQ(
      binding_.created->calls,
      (std::vector<std::string>{"Open|Provider=X",
                                "Execute|INSERT INTO Errors (Report) VALUES ('it''s')", "Close"}));
  EXPECT_EQ(file, "");
  binding_.created->refusals["Open"] = "no server";
  EXPECT_TRUE(errors_.SaveReport("r2"));
  EXPECT_EQ(file, "Failed to save error report to database. \r\nr2\r\n");
}

TEST_F(HuntERRTest, ACrashIsReportedAndKept) {
  std::string file;
  errors_.developer.append_to_report_file = [&](const std::string& text) {
    file += text;
    return true;
  };
  const std::string report = errors_.SysExcHandler(0xC0000005, 0x401000);
  EXPECT_TRUE(report.starts_with("Access violation at &H401000 \r\n")) << report;
  EXPECT_TRUE(Contains(report, "  Number: -1073741819 = &HC0000005 = ")) << report;
  EXPECT_TRUE(Contains(report, "  Source: HuntERR.SysExcHandler \r\n")) << report;
  EXPECT_EQ(file, report + "\r\n");
  EXPECT_TRUE(errors_.SysExcHandler(0x1234, 0).starts_with("Exception &H1234 at &H0 \r\n"));
}

}  // namespace
}  // namespace quorvale
