#include "mcp/tools/Arguments.h"
#include "support/ToolCaller.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

const Json noArguments = Json::object();

/// Without a path, a member whose database nobody opens.
Member memberWith(const std::string& id, const std::string& name, const std::string& dbPath = "") {
  Member member;
  member.id = id;
  member.name = name;
  member.dbPath = dbPath;
  return member;
}

std::string idOf(const Tools::Call& call) { return Tools::resolve(call).id; }

TEST(LenientText, IsAbsentUnlessItIsText) {
  const Household household;
  ToolCaller caller(household);
  const auto text = [](const Tools::Call& call) { return Tools::lenientText(call, "key"); };

  EXPECT_EQ(caller.of({{"key", " a "}}, text), " a ");
  EXPECT_EQ(caller.of({{"key", ""}}, text), "");
  EXPECT_EQ(caller.of(noArguments, text), std::nullopt);
  for (const Json& value :
       {Json(nullptr), Json(1), Json(true), Json::array({"a"}), Json{{"a", 1}}}) {
    EXPECT_EQ(caller.of({{"key", value}}, text), std::nullopt) << value;
  }
}

TEST(Resolve, RefusesWithoutMembers) {
  const Household household;

  for (const Json& arguments : {noArguments, Json{{"person", "Ann"}}}) {
    EXPECT_EQ(ToolCaller(household, SummaryLang::en).refusal(arguments, Tools::resolve),
              (Refusal{-32602,
                       "No members on this Mac yet — the user has to pair an iPhone in Larkspur "
                       "first."}));
    EXPECT_EQ(
        ToolCaller(household, SummaryLang::zh).refusal(arguments, Tools::resolve),
        (Refusal{-32602, "这台电脑上还没有任何成员 —— 用户需要先在 Larkspur 里配对 iPhone。"}));
  }
}

TEST(Resolve, TakesTheOnlyMemberWhenNobodyIsNamed) {
  Household household;
  household.add(memberWith("ann", "Ann"));
  ToolCaller caller(household);

  EXPECT_EQ(caller.of(noArguments, idOf), "ann");
  for (const Json& nobody : {Json(nullptr),
                             Json(7),
                             Json(1.5),
                             Json(true),
                             Json::array({"Bob"}),
                             Json{{"name", "Bob"}},
                             Json(""),
                             Json(" \t "),
                             Json(" ann\t")}) {
    EXPECT_EQ(caller.of({{"person", nobody}}, idOf), "ann") << nobody;
  }
}

TEST(Resolve, RefusesAnUnknownPersonEvenWhenThereIsOneMember) {
  Household household;
  household.add(memberWith("ann", "Ann"));

  EXPECT_EQ(ToolCaller(household, SummaryLang::en).refusal({{"person", "Bob"}}, Tools::resolve),
            (Refusal{-32602, "No member named \"Bob\". Available: Ann"}));
  EXPECT_EQ(ToolCaller(household, SummaryLang::zh).refusal({{"person", "Bob"}}, Tools::resolve),
            (Refusal{-32602, "没有叫「Bob」的成员。可选:Ann"}));
}

TEST(Resolve, RequiresAPersonAmongSeveral) {
  Household household;
  household.add(memberWith("2", "小美"));
  household.add(memberWith("1", "Ann"));

  for (const Json& arguments :
       {noArguments, Json{{"person", ""}}, Json{{"person", "\t "}}, Json{{"person", 1}}}) {
    EXPECT_EQ(ToolCaller(household, SummaryLang::en).refusal(arguments, Tools::resolve),
              (Refusal{-32602,
                       "This Mac has 2 members, so person is required (there is no 'all members' "
                       "option). Call list_persons first. Available: 小美, Ann"}))
        << arguments;
    EXPECT_EQ(ToolCaller(household, SummaryLang::zh).refusal(arguments, Tools::resolve),
              (Refusal{-32602,
                       "这台电脑上有 2 个成员,person 参数必填(不支持全部成员)。先调 list_persons "
                       "看清楚。可选:小美, Ann"}))
        << arguments;
  }
}

struct PersonCase {
  std::string name;
  std::string person;
  std::optional<std::string> id;  ///< absent: refused
};

class ResolvePerson : public testing::TestWithParam<PersonCase> {};

TEST_P(ResolvePerson, MatchesIdsAndNamesExactlyButForBlanksAround) {
  Household household;
  household.add(memberWith("id-1", "Ann Lee"));
  household.add(memberWith("id-2", "小美"));
  ToolCaller caller(household);
  const Json arguments{{"person", GetParam().person}};

  const bool refused = caller.refusal(arguments, Tools::resolve).has_value();

  ASSERT_EQ(refused, !GetParam().id.has_value());
  if (!refused) {
    EXPECT_EQ(caller.of(arguments, idOf), GetParam().id);
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, ResolvePerson,
                         testing::Values(PersonCase{"Id", "id-2", "id-2"},
                                         PersonCase{"Name", "小美", "id-2"},
                                         PersonCase{"BlanksAroundTheName", "  Ann Lee \t", "id-1"},
                                         PersonCase{"BlanksAroundTheId", "\tid-1 ", "id-1"},
                                         PersonCase{"LetterCaseOfTheName", "ann lee", std::nullopt},
                                         PersonCase{"LetterCaseOfTheId", "ID-1", std::nullopt},
                                         PersonCase{"PartOfTheName", "Ann", std::nullopt},
                                         PersonCase{"BlanksInside", "Ann  Lee", std::nullopt},
                                         PersonCase{"LineBreakAfter", "Ann Lee\n", std::nullopt},
                                         PersonCase{"LineBreakAlone", "\n", std::nullopt},
                                         PersonCase{"NoBreakSpace", "\u00A0小美", std::nullopt},
                                         PersonCase{"AllMembers", "all", std::nullopt}),
                         [](const auto& test) { return test.param.name; });

TEST(Resolve, QuotesThePersonTrimmedButForLineBreaks) {
  Household household;
  household.add(memberWith("1", "Ann"));
  household.add(memberWith("2", "{0}"));

  EXPECT_EQ(ToolCaller(household).refusal({{"person", " \tAnn\n "}}, Tools::resolve),
            (Refusal{-32602, "No member named \"Ann\n\". Available: Ann, {0}"}));
  EXPECT_EQ(ToolCaller(household).refusal({{"person", "{1}"}}, Tools::resolve),
            (Refusal{-32602, "No member named \"{1}\". Available: Ann, {0}"}));
}

TEST(Resolve, TakesTheFirstMemberOfAName) {
  Household household;
  household.add(memberWith("1", "Ann"));
  household.add(memberWith("2", "Ann"));

  EXPECT_EQ(ToolCaller(household).of({{"person", "Ann"}}, idOf), "1");
}

TEST(Resolve, LetsAnEarlierNameBeatALaterId) {
  Household household;
  household.add(memberWith("1", "2"));
  household.add(memberWith("2", "1"));

  EXPECT_EQ(ToolCaller(household).of({{"person", "2"}}, idOf), "1");
  EXPECT_EQ(ToolCaller(household).of({{"person", "1"}}, idOf), "1");
}

TEST(Resolve, FindsAMemberWhoseOwnNameHasBlanksByIdAlone) {
  Household household;
  household.add(memberWith("1", " Ann "));

  EXPECT_EQ(ToolCaller(household).of({{"person", "1"}}, idOf), "1");
  EXPECT_EQ(ToolCaller(household).refusal({{"person", " Ann "}}, Tools::resolve),
            (Refusal{-32602, "No member named \"Ann\". Available:  Ann "}));
}

TEST(Names, AreJoinedInTheOrderOfTheRoster) {
  const std::vector<Member> members{
      memberWith("1", "Ann"), memberWith("2", "小美"), memberWith("3", "Ann")};

  EXPECT_EQ(Tools::names(members), "Ann, 小美, Ann");
  EXPECT_EQ(Tools::names({}), "");
}

/// Opens `member`'s database and lets it go again.
auto opening(const Member& member) {
  return [member](const Tools::Call& call) { Tools::open(member, call); };
}

TEST(Open, SaysInChineseThatTheFolderIsMissing) {
  const Household household;
  const std::filesystem::path folder = household.dataRoot() / "away";
  const Member member = memberWith("1", "Ann", folder / "health.sqlite");

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_EQ(ToolCaller(household, lang).refusal(noArguments, opening(member)),
              (Refusal{-32603, "打不开 Ann 的数据:数据目录不可用(盘没挂载?):" + folder.string()}));
  }
}

TEST(Open, SaysInChineseThatTheFileIsMissing) {
  const Household household;
  const std::filesystem::path file = household.dataRoot() / "gone.sqlite";

  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    EXPECT_EQ(
        ToolCaller(household, lang).refusal(noArguments, opening(memberWith("1", "{1}", file))),
        (Refusal{-32603, "打不开 {1} 的数据:库文件不存在:" + file.string()}));
  }
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(Open, PassesOnWhySQLiteCannotOpen) {
  const Household household;
  const Member member = memberWith("1", "Ann", household.dataRoot());

  const std::optional<Refusal> refusal =
      ToolCaller(household).refusal(noArguments, opening(member));

  // A folder in the file's place; SQLite's own words for it differ between its versions.
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->code, -32603);
  EXPECT_THAT(refusal->message, testing::MatchesRegex("打不开 Ann 的数据:打不开库:.+"));
}

std::string rangeOf(const Tools::Call& call) {
  const DayRange range = Tools::range(call);
  return range.from + " ~ " + range.to;
}

struct TodayCase {
  std::string name;
  std::string zone;
  double now;
  std::string range;
};

class DefaultRange : public testing::TestWithParam<TodayCase> {};

TEST_P(DefaultRange, IsTodayAndTheNinetyCalendarDaysBefore) {
  const Household household;
  const ZoneGuard zone(GetParam().zone);
  ToolCaller caller(household, SummaryLang::en, GetParam().now);

  EXPECT_EQ(caller.of(noArguments, rangeOf), GetParam().range);
}

INSTANTIATE_TEST_SUITE_P(
    Days, DefaultRange,
    testing::Values(TodayCase{"AnyDay", "UTC", testNow, "2023-12-18 ~ 2024-03-17"},
                    TodayCase{"LeapDay", "UTC", 1709208000, "2023-12-01 ~ 2024-02-29"},
                    TodayCase{"AfterTheLeapDay", "UTC", 1709294400, "2023-12-02 ~ 2024-03-01"},
                    TodayCase{"NoLeapYear", "UTC", 1677672000, "2022-12-01 ~ 2023-03-01"},
                    TodayCase{"BackToTheLeapDay", "UTC", 1716984000, "2024-02-29 ~ 2024-05-29"},
                    TodayCase{"BackToTheFirst", "UTC", 1717070400, "2024-03-01 ~ 2024-05-30"},
                    TodayCase{"MonthEnd", "UTC", 1717156800, "2024-03-02 ~ 2024-05-31"},
                    TodayCase{"NewYear", "UTC", 1704110400, "2023-10-03 ~ 2024-01-01"},
                    TodayCase{"LastOfALeapYear", "UTC", 1735646400, "2024-10-02 ~ 2024-12-31"},
                    TodayCase{"LastOfAYear", "UTC", 1704024000, "2023-10-02 ~ 2023-12-31"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Midnights, DefaultRange,
    testing::Values(
        TodayCase{"BeforeShanghai", "Asia/Shanghai", 1710691199, "2023-12-18 ~ 2024-03-17"},
        TodayCase{"InShanghai", "Asia/Shanghai", 1710691200, "2023-12-19 ~ 2024-03-18"},
        TodayCase{"BeforeNewYork", "America/New_York", 1710647999, "2023-12-17 ~ 2024-03-16"},
        TodayCase{"InNewYork", "America/New_York", 1710648000, "2023-12-18 ~ 2024-03-17"},
        // The day on which New York's clocks go forward begins in winter time.
        TodayCase{"BeforeTheShortDay", "America/New_York", 1710046799, "2023-12-10 ~ 2024-03-09"},
        TodayCase{"OfTheShortDay", "America/New_York", 1710046800, "2023-12-11 ~ 2024-03-10"}),
    [](const auto& test) { return test.param.name; });

TEST(Range, KeepsDaysAsTheyWereWritten) {
  const Household household;
  ToolCaller caller(household);

  EXPECT_EQ(caller.of({{"from", "2024-02-29"}, {"to", "2024-03-01"}}, rangeOf),
            "2024-02-29 ~ 2024-03-01");
  EXPECT_EQ(caller.of({{"from", "2024-3-1"}, {"to", "9999-12-31"}}, rangeOf),
            "2024-3-1 ~ 9999-12-31");
}

TEST(Range, KeepsAFromThatIsLaterThanTo) {
  const Household household;

  EXPECT_EQ(ToolCaller(household).of({{"from", "2024-03-02"}, {"to", "2024-03-01"}}, rangeOf),
            "2024-03-02 ~ 2024-03-01");
}

TEST(Range, CountsTheDefaultFromBackFromTodayNotFromTo) {
  const Household household;

  EXPECT_EQ(ToolCaller(household).of({{"to", "2020-01-01"}}, rangeOf), "2023-12-18 ~ 2020-01-01");
}

class NoDay : public testing::TestWithParam<Json> {};

TEST_P(NoDay, FallsBackToTheDefault) {
  const Household household;
  ToolCaller caller(household);

  EXPECT_EQ(caller.of({{"from", GetParam()}, {"to", GetParam()}}, rangeOf),
            "2023-12-18 ~ 2024-03-17");
  EXPECT_EQ(caller.of({{"from", GetParam()}, {"to", "2024-03-01"}}, rangeOf),
            "2023-12-18 ~ 2024-03-01");
}

INSTANTIATE_TEST_SUITE_P(Values, NoDay,
                         testing::Values(Json(""), Json("2024-02-30"), Json("2023-02-29"),
                                         Json("2024-13-01"), Json("2024-00-10"), Json("2024/03/01"),
                                         Json("20240301"), Json(" 2024-03-01"), Json("2024-03-01 "),
                                         Json("2024-03-01\n"), Json("2024-03-01T00:00"),
                                         Json("-2024-03-01"), Json("0000-01-01"), Json("yesterday"),
                                         Json("２０２４-03-01"), Json(20240301), Json(true),
                                         Json(nullptr), Json::array({"2024-03-01"}),
                                         Json{{"day", "2024-03-01"}}));

TEST(MetricArg, FindsEveryKeyOfTheCatalogue) {
  const Household household;
  ToolCaller caller(household);

  for (const MetricInfo& info : metricTable) {
    EXPECT_EQ(caller.of({{"metric", info.rawValue}}, Tools::metricArg), info.metric);
  }
}

constexpr const char* catalogue =
    "steps(count), distance(km), flights(count), active_energy(kcal), "
    "resting_heart_rate(count/min), heart_rate(count/min), hrv(ms), respiratory_rate(count/min), "
    "oxygen_saturation(%), vo2max(mL/min·kg), weight(kg), bmi(无单位), body_fat(%), "
    "exercise_minutes(min), stand_minutes(min), sleep(min)";

class UnknownMetric : public testing::TestWithParam<std::string> {};

TEST_P(UnknownMetric, IsRefusedWithTheCatalogue) {
  const Household household;
  const Json arguments{{"metric", GetParam()}};

  EXPECT_EQ(ToolCaller(household, SummaryLang::en).refusal(arguments, Tools::metricArg),
            (Refusal{-32602, "Unknown metric \"" + GetParam() + "\". One of: " + catalogue}));
  EXPECT_EQ(ToolCaller(household, SummaryLang::zh).refusal(arguments, Tools::metricArg),
            (Refusal{-32602, "不认识的 metric「" + GetParam() + "」。可用:" + catalogue}));
}

INSTANTIATE_TEST_SUITE_P(Names, UnknownMetric,
                         testing::Values("", "Steps", "SLEEP", " steps", "steps ", "step",
                                         "StepCount", "步数", "{1}"));

TEST(MetricArg, IsRequired) {
  const Household household;

  for (const Json& arguments : {noArguments,
                                Json{{"metric", nullptr}},
                                Json{{"metric", 1}},
                                Json{{"metric", true}},
                                Json{{"metric", Json::array({"steps"})}},
                                Json{{"Metric", "steps"}}}) {
    EXPECT_EQ(ToolCaller(household, SummaryLang::en).refusal(arguments, Tools::metricArg),
              (Refusal{-32602, std::string("metric is required. One of: ") + catalogue}))
        << arguments;
    EXPECT_EQ(ToolCaller(household, SummaryLang::zh).refusal(arguments, Tools::metricArg),
              (Refusal{-32602, std::string("metric 必填。可用:") + catalogue}))
        << arguments;
  }
}

}  // namespace
