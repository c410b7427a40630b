#include "Json.h"

#include <gtest/gtest.h>

namespace Orvo {
namespace Emulator {
namespace MenuHost {
namespace {

TEST(OrvoMenuJson, EscapesQuotesBackslashesAndControlCharacters) {
    EXPECT_EQ(jsonString("say \"hi\"\\"), R"("say \"hi\"\\")");
    EXPECT_EQ(jsonString("a\nb\tc\rd"), R"("a\nb\tc\rd")");
    EXPECT_EQ(jsonString(std::string("\x01\x1f\x7f", 3)), R"("\u0001\u001f\u007f")");
    EXPECT_EQ(jsonString(std::string("a\0b", 3)), R"("a\u0000b")");
}

TEST(OrvoMenuJson, KeepsValidUtf8AndReplacesInvalidBytes) {
    EXPECT_EQ(jsonString("Mise à jour 🙂"), "\"Mise à jour 🙂\"");
    EXPECT_EQ(jsonString("\xff"), R"("\ufffd")");
    EXPECT_EQ(jsonString("\xc3"), R"("\ufffd")");              // cut sequence
    EXPECT_EQ(jsonString("\xc0\xaf"), R"("\ufffd\ufffd")");     // overlong
    EXPECT_EQ(jsonString("\xed\xa0\x80"), R"("\ufffd\ufffd\ufffd")");  // surrogate
}

TEST(OrvoMenuJson, BranchDocumentCarriesRawAndPlainDescriptionsAndNulls) {
    BranchView view;
    view.language = "de";
    view.branch.id = kBranchId;
    view.branch.kind = ItemKind::Branch;
    view.branch.title = {true, 0, std::string("Update")};
    view.branch.description = {true, 0, std::string("a<br>b")};
    ItemView toggle;
    toggle.id = "db/x";
    toggle.kind = ItemKind::Toggle;
    toggle.title = {true, -1, std::nullopt};
    toggle.setting = {true, 0, 1};
    toggle.stateId = {true, 1, std::string("SID_ON")};
    toggle.stateText = "Ein";
    view.items.push_back(toggle);
    view.properties.emplace_back("provider/owner", StringCall{true, 0, std::string("me")});

    const std::string json = branchToJson(view, "/p.so");
    EXPECT_NE(json.find(R"("description":"a<br>b","descriptionText":"a\nb")"), std::string::npos) << json;
    EXPECT_NE(json.find(R"("title":null)"), std::string::npos) << json;
    EXPECT_NE(json.find(R"("setting":1,"settingResult":0,"state":"SID_ON","stateText":"Ein","stateResult":1)"),
              std::string::npos) << json;
    EXPECT_NE(json.find(R"("provider":{"provider/owner":"me"})"), std::string::npos) << json;
    EXPECT_EQ(json.find(R"("value")"), std::string::npos) << "only value items carry a value";
}

} // namespace
} // namespace MenuHost
} // namespace Emulator
} // namespace Orvo
