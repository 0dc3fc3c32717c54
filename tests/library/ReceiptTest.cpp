#include <pelorino/PLRAntiCheat.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "LibraryTest.h"
#include "TemporaryFolder.h"

namespace pelorino {
namespace {

class ReceiptTest : public LibraryTest {
 protected:
  PLRAntiCheat::Handler handler() {
    return [this](const PLRVerifyResponse& response) { answers += response.description() + "\n"; };
  }
  /// All that the handler was given, a line each.
  std::string verified(const std::string& receipt) {
    return answersOf([&] { PLRAntiCheat::verifyPayment(receipt, handler()); });
  }
  std::string verifiedFile(const std::string& path) {
    PLRHostDescription host;
    host.applicationName = "game";
    host.supportDirectory = file.support();
    host.receiptFile = path;
    PLRHost::describe(host);
    return answersOf([&] { PLRAntiCheat::verifyPayment(handler()); });
  }
  std::string answersOf(const std::function<void()>& action) {
    answers.clear();
    action();
    system.runUntilIdle();
    return answers;
  }

  static constexpr const char* internalError = "receiptStatus: [Receipt internal error]\n";
  static constexpr const char* notStarted =
      "ERROR In the VerifyPayment method an error has occurred: The SDK is not initialized yet!";
  std::string answers;
};

TEST_F(ReceiptTest, EveryAnswerOfTheBackendIsGivenOnce) {
  start();
  const struct {
    int status;
    const char* body;
    const char* answer;
  } cases[] = {
      {200, R"({"status":0})", "receiptStatus: [Receipt valid]\n"},
      {200, R"({"status":1,"verificationResult":"no"})",
       "receiptStatus: [Receipt not valid] verificationResult: [no]\n"},
      {200, R"({"status":3,"verificationResult":"s"})",
       "receiptStatus: [Receipt sandbox] verificationResult: [s]\n"},
      {200, R"({"status":7,"verificationResult":"?"})",
       "receiptStatus: [Receipt internal error] verificationResult: [?]\n"},
      {200, R"({})", internalError},
      {200, "", internalError},
      {200, "{", internalError},
      {500, R"({"status":0})", "receiptStatus: [Receipt server error]\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.body);
    receipts.answers.clear();
    receipts.answer(c.status, c.body);
    EXPECT_EQ(verified("no Base64"), c.answer);
  }
  receipts.answers = {{.status = {}, .body = {}, .error = "connection refused"}};
  EXPECT_EQ(verified("x"), "receiptStatus: [Receipt server error]\n");
  EXPECT_EQ(*receipts.requests.front().body,
            R"({"platform":"ios","receipt":{"receipt-data":"no Base64","password":""},)"
            R"("bundle":"com.example.game"})");
}

TEST_F(ReceiptTest, WhatCannotBeAskedIsAnsweredTooWithItsLine) {
  EXPECT_EQ(linesOf([&] { EXPECT_EQ(verified(""), internalError); }),
            std::vector<std::string>{notStarted});
  start();
  EXPECT_EQ(linesOf([&] { EXPECT_EQ(verified(""), internalError); }),
            std::vector<std::string>{"ERROR Invalid receipt data."});
  EXPECT_TRUE(receipts.requests.empty());
  PLRAntiCheat::verifyPayment("x", nullptr);
  system.runUntilIdle();
  EXPECT_EQ(receipts.requests.size(), 1U) << "a host may not care for the answer";
}

TEST_F(ReceiptTest, TheReceiptFileIsReadWholeOrSaysWhyNot) {
  start();
  receipts.answer(200, R"({"status":0})");
  const TemporaryFolder folder;
  const auto write = [&](const char* name, std::size_t size) {
    std::ofstream(folder.file(name)) << std::string(size, '\xff');
  };
  write("receipt", 4);
  EXPECT_EQ(verifiedFile(folder.file("receipt")), "receiptStatus: [Receipt valid]\n");
  EXPECT_TRUE(holds(receipts.requests.back(), R"("receipt-data":"/////w==")"));
  write("largest", 16 * 1024 * 1024);
  EXPECT_EQ(verifiedFile(folder.file("largest")), "receiptStatus: [Receipt valid]\n");

  write("large", 16 * 1024 * 1024 + 1);
  ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
  const auto asked = receipts.requests.size();
  const std::pair<std::string, std::string> unreadable[] = {
      {folder.file("large"), "File too large"},
      {folder.file("pipe"), "Not a regular file"},
      {folder.path(), "Is a directory"},
      {folder.file("missing"), ""},
      {"", ""},
  };
  for (const auto& [path, failure] : unreadable) {
    SCOPED_TRACE(path);
    const std::vector<std::string> none;
    EXPECT_EQ(linesOf([&, &path = path] { EXPECT_EQ(verifiedFile(path), internalError); }),
              failure.empty() ? none
                              : std::vector{"ERROR Couldn't read receipt data. Error: " + failure});
  }
  EXPECT_EQ(receipts.requests.size(), asked);
}

TEST_F(ReceiptTest, ATeardownAmidAVerificationLeavesNoHandlerWithoutAnswer) {
  start();
  receipts.answer(200, R"({"status":0})");
  receipts.onRequest = [] { PLREngineWrapper::destroySDK(); };
  answersOf([&] {
    for (int i = 0; i < 5; ++i) PLRAntiCheat::verifyPayment("x", handler());
    PLREngineWrapper::destroySDK();
    PLRAntiCheat::verifyPayment("x", handler());
  });
  EXPECT_EQ(std::ranges::count(answers, '\n'), 6) << answers;
}

}  // namespace
}  // namespace pelorino
