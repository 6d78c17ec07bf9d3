/* SPDX-License-Identifier: Apache-2.0 */
/* Which requests a fault hits, and how it is laid down through the control API. */
#include "api_fixture.h"

#include <string>
#include <utility>

using client::Result;
using testing::HasSubstr;
using viewlib::Answer;
using viewlib::FaultRule;

namespace
{

class FaultsApiTest : public ApiTest
{
  protected:
    void SetUp() override
    {
        config.strict.registration = false;
        start();
    }
    Result lay(const std::string& rule)
    {
        return api("POST", "/api/faults", rule);
    }
    /* The statuses of so many posts of a face. */
    std::string statuses(int count)
    {
        std::string found;
        for (int i = 0; i < count; ++i)
        {
            const long status = postFace().status;
            found += status == 200 ? "." : status == 503 ? "x" : "?";
        }
        return found;
    }
    static FaultRule rule(unsigned status, const std::string& resource = "/VIID/Faces")
    {
        FaultRule made;
        made.resource = resource;
        made.answer = Answer(status);
        return made;
    }
};

TEST_F(FaultsApiTest, ACountTakesTheNextRequests)
{
    EXPECT_EQ(lay(R"({"Resource":"/VIID/Faces","Count":3,"Answer":{"Status":503}})").body, R"({"Fault":1})");
    EXPECT_EQ(statuses(2), "xx");
    EXPECT_EQ(get("/api/faults").body, R"({"Faults":[{"Device":"*","Resource":"/VIID/Faces","Method":"*","Count":3,)"
                                       R"("Answer":{"Status":503},"Fault":1,"Hits":2,"Left":1}]})");
    EXPECT_EQ(statuses(3), "x..");
    EXPECT_EQ(at(get("/api/faults").body, "Faults/0/Left"), "0"); /* still shown */
    EXPECT_EQ(at(get("/api/faults").body, "Faults/0/Hits"), "3");
    EXPECT_EQ(at(get("/api/status").body, "Counts/Faults"), "0");
}

TEST_F(FaultsApiTest, AShareIsSpreadEvenly)
{
    const std::pair<const char*, const char*> shares[] = {
        {"0.25", "...x...x...x"}, {"0.5", ".x.x.x.x.x.x"}, {"0.75", ".xxx.xxx.xxx"},
        {"0.1", ".........x.."},  {"0.4", "..x.x..x.x.."}, {"1", "xxxxxxxxxxxx"},
    };
    for (const auto& [share, expected] : shares)
    {
        lay(std::string(R"({"Resource":"/VIID/Faces","Share":)") + share + R"(,"Answer":{"Status":503}})");
        EXPECT_EQ(statuses(12), expected) << share;
        server().clearFaults();
    }
}

TEST_F(FaultsApiTest, AShareIsExactOverManyRequests)
{
    FaultRule third = rule(503);
    third.share = 0.333;
    server().addFault(third);
    const client::Handle handle = client::newHandle();
    const client::Call made = call("/VIID/Faces", R"({"FaceListObject":{}})");
    for (int i = 0; i < 1000; ++i)
    {
        client::perform(handle.get(), made);
    }
    EXPECT_EQ(server().faults().at(0).hits, 333U);
}

TEST_F(FaultsApiTest, ARuleHoldsUntilItIsRemoved)
{
    lay(R"({"Resource":"/VIID/*","Preset":"unavailable"})");
    EXPECT_EQ(statuses(3), "xxx");
    EXPECT_EQ(at(get("/api/faults").body, "Faults/0/Left"), "null");
    EXPECT_EQ(at(get("/api/faults").body, "Faults/0/Preset"), R"("unavailable")");
    EXPECT_EQ(api("DELETE", "/api/faults/1").body, "{}");
    EXPECT_EQ(statuses(1), ".");
    EXPECT_EQ(error(api("DELETE", "/api/faults/1")), R"(404 "there is no fault 1")");
    EXPECT_EQ(error(api("DELETE", "/api/faults/x")), R"(404 "there is no /api/faults/x")");
    lay(R"({"Preset":"gzip"})");
    lay(R"({"Preset":"chunked"})");
    EXPECT_EQ(api("DELETE", "/api/faults").body, "{}");
    EXPECT_EQ(get("/api/faults").body, R"({"Faults":[]})");
}

TEST_F(FaultsApiTest, DevicesResourcesAndMethodsAreToldApart)
{
    lay(R"({"Device":"34020000001190000002","Answer":{"Status":503}})");
    EXPECT_EQ(statuses(1), ".");
    client::Call other = call("/VIID/Faces", R"({"FaceListObject":{}})");
    other.headers[0] = "User-Identify:34020000001190000002";
    EXPECT_EQ(client::perform(other).status, 503);
    server().clearFaults();

    lay(R"({"Resource":"/VIID/System/*","Answer":{"Status":503}})");
    EXPECT_EQ(statuses(1), ".");
    EXPECT_EQ(keepAlive().status, 503);
    server().clearFaults();

    lay(R"({"Method":"GET","Answer":{"Status":503}})");
    EXPECT_EQ(statuses(1), ".");
    EXPECT_EQ(get("/VIID/Faces").status, 503);
}

TEST_F(FaultsApiTest, RulesGoInTheirOrder)
{
    FaultRule once = rule(404);
    once.count = 1;
    FaultRule anyOnce = rule(408, "*");
    anyOnce.count = 1;
    server().addFault(rule(500, "*"));
    server().addFault(rule(501));
    server().addFault(rule(502));
    server().addFault(anyOnce);
    server().addFault(once);
    EXPECT_EQ(postFace().status, 404); /* with a count, exact */
    EXPECT_EQ(postFace().status, 408); /* with a count */
    EXPECT_EQ(postFace().status, 501); /* exact, the older */
    EXPECT_TRUE(server().removeFault(2));
    EXPECT_EQ(postFace().status, 502);
    EXPECT_EQ(keepAlive().status, 500);
    EXPECT_FALSE(server().removeFault(2));
}

TEST_F(FaultsApiTest, WhatAShareLeavesOutGoesToTheNextRule)
{
    FaultRule half = rule(500);
    half.share = 0.5;
    FaultRule waiting = rule(501);
    waiting.share = 0.5;
    waiting.answer.afterAuth = true;
    server().addFault(waiting);
    server().addFault(half);
    server().addFault(rule(503, "*"));
    std::string found;
    for (int i = 0; i < 8; ++i)
    {
        found += std::to_string(postFace().status) + " ";
    }
    EXPECT_EQ(found, "503 501 500 501 503 501 500 501 ");
}

TEST_F(FaultsApiTest, ScriptsAreRulesToo)
{
    server().script("/VIID/Faces", Answer(503));
    lay(R"({"Resource":"/VIID/Faces","Count":1,"Answer":{"Status":503}})");
    EXPECT_EQ(server().faults().size(), 2U);
    EXPECT_EQ(server().scriptsLeft(), 1U);
    EXPECT_EQ(statuses(1), "x");
    EXPECT_EQ(server().scriptsLeft(), 0U);
    EXPECT_EQ(server().faults().size(), 1U); /* a script that is used up is gone */
    server().clearScripts();
    EXPECT_EQ(statuses(2), "x.");
    EXPECT_EQ(server().exchanges().at(1).fault, 2);
    EXPECT_EQ(server().exchanges().at(2).fault, std::nullopt);
}

TEST_F(FaultsApiTest, APresetIsATemplate)
{
    EXPECT_EQ(lay(R"({"Preset":"delay","Count":1,"Answer":{"DelayMs":1}})").status, 201);
    const viewlib::Fault fault = server().faults().at(0);
    EXPECT_EQ(fault.rule.resource, "/VIID/*");
    EXPECT_EQ(fault.rule.answer.delay, std::chrono::milliseconds(1));
    lay(R"({"Preset":"redirect"})");
    EXPECT_EQ(server().faults().at(1).left, std::nullopt); /* the count that it proposes is not taken by itself */
    const Result presets = get("/api/presets");
    EXPECT_EQ(at(presets.body, "Presets/0"),
              R"({"Name":"stale-nonce","Title":"Nonce answered as stale","TitleZh":"Nonce 视为过期",)"
              R"("Rule":{"Device":"*","Resource":"/VIID/System/Register","Method":"POST","Count":1,)"
              R"("Preset":"stale-nonce","Answer":{"StaleNonce":true}}})");
}

TEST_F(FaultsApiTest, EveryMemberIsTakenAndShown)
{
    const std::string rule =
        R"({"Device":"34020000001190000001","Resource":"/VIID/Faces","Method":"POST","Share":0.5,"Answer":{)"
        R"("Status":503,"Body":"b","ContentType":"text/plain","Headers":[["Retry-After","1"],["X-A","b c"]],)"
        R"("DelayBeforeReadingMs":1,"DelayMs":2,"DelayBeforeBodyMs":3,"BytesPerSecond":4,"RequestBytesPerSecond":5,)"
        R"("CutAfterRequestBytes":6,"StallAfterRequestBytes":7,"Framing":"chunked","Cut":"mid-body","CutAfter":8,)"
        R"("Raw":"r","Trailing":"t","ContinueFirst":true,"BeforeBody":true,"Gzip":true,"Envelope":"both",)"
        R"("StatusCode":"10","StatusCodeAsText":true,"StatusString":"s","Id":"null",)"
        R"("Time":{"LocalTime":"rfc3339","TimeMode":1,"TimeZone":null,"UtcOffsetMinutes":480,"OffsetMs":-9},)"
        R"("Challenge":{"Algorithms":["sha-256","md5"],"Algorithm":false,"QuotedAlgorithm":true,"Opaque":false,)"
        R"("OpaqueText":"o","Cnonce":true,"Realm":"r","EmptyBody":true,"Cookie":"c"},)"
        R"("StaleNonce":true,"ExpireSession":true,"NextNonce":true,"AskCredentials":true,)"
        R"("SkipAuth":true,"AfterAuth":true,"TakeEffect":true})";
    EXPECT_EQ(lay(rule + "}").body, R"({"Fault":1})");
    EXPECT_EQ(at(get("/api/faults").body, "Faults/0"), rule + R"(,"Fault":1,"Hits":0,"Left":null})");
}

TEST_F(FaultsApiTest, WhatCannotBeIsNamed)
{
    const std::pair<const char*, const char*> wrong[] = {
        {"{", "the body is not JSON"},
        {"[]", "the body is not a JSON object"},
        {"{}", R"(a rule needs \"Preset\" or \"Answer\")"},
        {R"({"Preset":"nothing"})", R"(there is no preset \"nothing\")"},
        {R"({"Preset":1})", R"(\"Preset\" is 1: expected a text)"},
        {R"({"Answer":[]})", R"(\"Answer\" is []: expected an object)"},
        {R"({"Answer":{},"Why":1})", R"(there is no member \"Why\")"},
        {R"({"Answer":{"status":503}})", R"(there is no member \"Answer.status\")"},
        {R"({"Answer":{},"Device":""})",
         R"(\"Device\" is \"\": expected \"*\" or 1 to 64 characters without control characters)"},
        {R"({"Answer":{},"Resource":"VIID/Faces"})",
         R"(\"Resource\" is \"VIID/Faces\": expected \"*\", a path, or the beginning of one followed by \"*\")"},
        {R"({"Answer":{},"Resource":"/VIID/*/Data"})",
         R"(\"Resource\" is \"/VIID/*/Data\": expected \"*\", a path, or the beginning of one followed by \"*\")"},
        {R"({"Answer":{},"Method":"A B"})", R"(\"Method\" is \"A B\": expected \"*\" or a method such as \"POST\")"},
        {R"({"Answer":{},"Count":0})", R"(\"Count\" is 0: expected a whole number from 1 to 1000000)"},
        {R"({"Answer":{},"Count":1.5})", R"(\"Count\" is 1.5: expected a whole number from 1 to 1000000)"},
        {R"({"Answer":{},"Count":"1"})", R"(\"Count\" is \"1\": expected a whole number from 1 to 1000000)"},
        {R"({"Answer":{},"Share":1.1})", R"(\"Share\" is 1.1: expected a number above 0 and at most 1)"},
        {R"({"Answer":{},"Share":0})", R"(\"Share\" is 0: expected a number above 0 and at most 1)"},
        {R"({"Answer":{},"Share":0.5,"Count":1})", R"(a rule has \"Count\" or \"Share\", not both)"},
        {R"({"Answer":{"Status":100}})", R"(\"Answer.Status\" is 100: expected 0 or a whole number from 200 to 599)"},
        {R"({"Answer":{"Status":"503"}})",
         R"(\"Answer.Status\" is \"503\": expected 0 or a whole number from 200 to 599)"},
        {R"({"Answer":{"Body":1}})", R"(\"Answer.Body\" is 1: expected a text)"},
        {R"({"Answer":{"ContentType":"a\nb"}})",
         R"(\"Answer.ContentType\" is \"a\\nb\": expected a text without control characters)"},
        {R"({"Answer":{"Headers":[["a:","b"]]}})",
         R"(\"Answer.Headers\" is [\"a:\",\"b\"]: expected an array of [\"name\",\"value\"])"},
        {R"({"Answer":{"Headers":[["a","b\r\nc: d"]]}})",
         R"(\"Answer.Headers\" is [\"a\",\"b\\r\\nc: d\"]: expected an array of [\"name\",\"value\"])"},
        {R"({"Answer":{"Headers":{"a":"b"}}})",
         R"(\"Answer.Headers\" is {\"a\":\"b\"}: expected an array of [\"name\",\"value\"])"},
        {R"({"Answer":{"DelayMs":3600001}})",
         R"(\"Answer.DelayMs\" is 3600001: expected a whole number from 0 to 3600000)"},
        {R"({"Answer":{"CutAfter":-1}})",
         R"(\"Answer.CutAfter\" is -1: expected a whole number from 0 to 9007199254740992)"},
        {R"({"Answer":{"Framing":"gzip"}})",
         R"(\"Answer.Framing\" is \"gzip\": expected one of \"length\", \"chunked\", \"close\")"},
        {R"({"Answer":{"Gzip":1}})", R"(\"Answer.Gzip\" is 1: expected true or false)"},
        {R"({"Answer":{"StatusCode":[]}})", R"(\"Answer.StatusCode\" is []: expected a number, a text or null)"},
        {R"({"Answer":{"Time":{"LocalTime":1}}})",
         R"(\"Answer.Time.LocalTime\" is 1: expected one of \"digits\", \"epoch-ms\", \"epoch-s\", \"rfc3339\")"},
        {R"({"Answer":{"Time":{"Zone":1}}})", R"(there is no member \"Answer.Time.Zone\")"},
        {R"({"Answer":{"Challenge":{"Algorithms":[]}}})",
         R"(\"Answer.Challenge.Algorithms\" is []: expected an array of \"md5\" and \"sha-256\")"},
        {R"({"Answer":{"Challenge":{"Algorithms":["sha"]}}})",
         R"(\"Answer.Challenge.Algorithms\" is \"sha\": expected one of \"md5\", \"sha-256\")"},
        {R"({"Answer":{"BeforeBody":true}})", "an answer before the body needs a status"},
    };
    for (const auto& [rule, message] : wrong)
    {
        EXPECT_EQ(error(lay(rule)), std::string("400 \"") + message + '"') << rule;
    }
    const std::string longText(100, 'a');
    EXPECT_EQ(error(lay(R"({"Answer":{"Status":")" + longText + R"("}})")),
              R"(400 "\"Answer.Status\" is \")" + std::string(63, 'a') +
                  R"(...: expected 0 or a whole number from 200 to 599")");
    EXPECT_TRUE(server().faults().empty());
}

TEST_F(FaultsApiTest, RulesAreBounded)
{
    for (int i = 0; i < 1000; ++i)
    {
        server().addFault(rule(503));
    }
    EXPECT_EQ(error(lay(R"({"Preset":"gzip"})")), R"(400 "there are 1000 rules already")");
    server().script("/VIID/Faces", Answer(404)); /* tests are not bounded */
    EXPECT_EQ(postFace().status, 404);
    server().clearFaults();
    FaultRule once = rule(503);
    once.count = 1;
    for (int i = 0; i < 60; ++i)
    {
        server().addFault(once);
        postFace();
    }
    EXPECT_EQ(server().faults().size(), 50U); /* the last ones that were used up */
    EXPECT_THROW(server().addFault([&] {
        FaultRule both = once;
        both.share = 0.5;
        return both;
    }()),
                 std::invalid_argument);
    EXPECT_THROW(viewlib::preset("nothing"), std::invalid_argument);
}

TEST_F(FaultsApiTest, TheFeedTellsWhatBecomesOfThem)
{
    lay(R"({"Resource":"/VIID/Faces","Count":1,"Answer":{"Status":503}})");
    postFace();
    api("DELETE", "/api/faults/1");
    const std::string body = get("/api/feed").body;
    EXPECT_THAT(at(body, "Events/0"), HasSubstr(R"("Type":"fault","Fault":1,"Change":"added"})"));
    EXPECT_THAT(at(body, "Events/1"), HasSubstr(R"("Type":"fault","Fault":1,"Change":"hit"})"));
    EXPECT_EQ(at(body, "Events/2/Type"), R"("exchange")");
    EXPECT_EQ(at(body, "Events/2/Fault"), "1");
    EXPECT_THAT(at(body, "Events/3"), HasSubstr(R"("Type":"fault","Fault":1,"Change":"removed"})"));
}

} // namespace
