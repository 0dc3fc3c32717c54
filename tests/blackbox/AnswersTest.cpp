#include "BlackBoxTest.h"

// Operations that have a handler, over a real network.

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

constexpr const char* messaging = "/messaging/config";
constexpr const char* verification = "/verify/payment";

class Answers : public BlackBoxTest {
 protected:
  /// The host runs the line, and writes one that holds this text.
  static void expectAnswer(HostProcess& host, const std::string& line, const std::string& answer) {
    const std::size_t before = host.linesWith(answer).size();
    host.run(line);
    EXPECT_TRUE(host.logs(answer, before + 1)) << line << " is not answered by " << answer;
  }
  static json::value categoriesOf(std::int64_t version, const char* ids, const char* removed) {
    json::array categories;
    for (const char* id = ids; *id != '\0'; ++id) {
      categories.push_back(
          {{"id", std::string(1, *id)},
           {"buttons", {{{"id", "ok"}, {"text", "Jagd 🏹"}, {"activationMode", nullptr}}}}});
    }
    json::array gone;
    for (const char* id = removed; *id != '\0'; ++id) gone.emplace_back(std::string(1, *id));
    return {{"version", version}, {"categories", categories}, {"removed", gone}};
  }
  void answer(const json::value& categories) {
    backend_.answer(messaging, {{"pushCategories", categories}});
  }
  std::string stored() const {
    return file_.run("SELECT identifier FROM messagingCategory ORDER BY identifier") + "/" +
           file_.run("SELECT categoriesVersion FROM projects");
  }
};

const std::string ask = R"({"op":"eventsRouter.getMessagingCategories"})";

/// The line of an answer whose first category has this id.
std::string listed(const std::string& id) {
  return R"("result":[{"id":")" + id;
}

TEST_F(Answers, CategoriesAreKeptFromLaunchToLaunchAndThroughFaults) {
  {
    auto host = startedHost();
    answer(categoriesOf(3, "ab", ""));
    expectAnswer(*host, ask, listed("a"));
    EXPECT_TRUE(host->drain());
    EXPECT_EQ(host->end(), 0);
  }
  EXPECT_EQ(stored(), "a\nb/3");
  {
    auto host = startedHost();
    for (const json::object& fault :
         {json::object{{"status", 503}}, json::object{{"drop", "after"}, {"times", 2}},
          json::object{{"garbage", true}}}) {
      backend_.fault(messaging, fault);
      expectAnswer(*host, ask, listed("a"));
    }
    answer(categoriesOf(4, "c", "a"));
    expectAnswer(*host, ask, listed("b"));
    EXPECT_TRUE(host->drain());
    EXPECT_EQ(host->end(), 0);
  }
  EXPECT_EQ(stored(), "b\nc/4");
  const json::array asked = backend_.received(messaging);
  ASSERT_FALSE(asked.empty());
  EXPECT_EQ(asked.front().at("body").at("categoriesVersion"), 0);
  EXPECT_EQ(asked.back().at("body").at("categoriesVersion"), 3);
}

TEST_F(Answers, AReceiptIsAnsweredWhateverHappens) {
  auto host = startedHost();
  const std::string verify = R"({"op":"antiCheat.verifyPayment","receiptString":"cmVjZWlwdA=="})";
  expectAnswer(*host, verify, R"("receiptStatus":0,"verificationResult":"A development)");
  backend_.answer(verification, {{"status", 3}, {"verificationResult", "sandbox"}});
  expectAnswer(*host, verify, R"("receiptStatus":3,"verificationResult":"sandbox")");
  for (const json::object& fault :
       {json::object{{"status", 503}}, json::object{{"drop", "after"}, {"times", 2}}}) {
    backend_.fault(verification, fault);
    expectAnswer(*host, verify, R"("receiptStatus":2)");
  }
  const std::size_t asked = backend_.received(verification).size();
  // The host names no file of a receipt.
  expectAnswer(*host, R"({"op":"antiCheat.verifyPayment"})", R"("receiptStatus":4)");
  EXPECT_EQ(backend_.received(verification).size(), asked);
  EXPECT_EQ(host->end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
