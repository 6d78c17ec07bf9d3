/* SPDX-License-Identifier: Apache-2.0 */
/* Prints the page of wire members from the tables that the encoders walk. */
#define PUBSEC_MEMBER_FIELDS

#include "objects/members/all.h"

#include <cstdio>
#include <string>

namespace
{

const char* kindName(EPubSecKind kind)
{
    switch (kind)
    {
    case PUBSEC_KIND_TEXT:
        return "text";
    case PUBSEC_KIND_S32:
        return "s32";
    case PUBSEC_KIND_U32:
        return "u32";
    case PUBSEC_KIND_U64:
        return "u64";
    case PUBSEC_KIND_F32:
        return "float";
    case PUBSEC_KIND_F64:
        return "double";
    case PUBSEC_KIND_ONE_ZERO:
        return "32 bits";
    case PUBSEC_KIND_TEXT_POINTER:
        return "pointer to text";
    case PUBSEC_KIND_RECORD:
    case PUBSEC_KIND_RECORD_POINTER:
        return "record";
    }
    return "";
}

std::string typeOf(const TPubSecMember& member)
{
    return member.eKind == PUBSEC_KIND_TEXT ? "char[" + std::to_string(member.wCapacity) + "]" : kindName(member.eKind);
}

std::string ruleOf(const TPubSecMember& member)
{
    const std::string gate = member.pchGate != nullptr ? std::string("`") + member.pchGate + "`" : std::string();
    switch (member.eRule)
    {
    case PUBSEC_RULE_ALWAYS:
        return member.eKind == PUBSEC_KIND_ONE_ZERO ? "always, as \"1\" for 1 and \"0\" for anything else" : "always";
    case PUBSEC_RULE_TEXT:
        return "text";
    case PUBSEC_RULE_FLAG:
    case PUBSEC_RULE_FLAG16:
        return "flag " + gate;
    case PUBSEC_RULE_NOT_MINUS_ONE:
        return member.eKind == PUBSEC_KIND_S32 ? "not -1" : "not -1.0";
    case PUBSEC_RULE_POINTER:
        return "pointer";
    case PUBSEC_RULE_POINTER_IF_ONE:
        return "pointer, and " + gate + " is \"1\"";
    }
    return "";
}

std::string fieldOf(const TPubSecMember& member)
{
    return member.pchField != nullptr ? std::string("`") + member.pchField + "`" : std::string();
}

/* One row a member; those of a nested object follow it, with its key before theirs. */
void printRows(const TPubSecTable& table, const std::string& path)
{
    for (u32 row = 0; row < table.dwRows; row++)
    {
        const TPubSecMember& member = table.ptRows[row];
        const bool nested = member.ptNested != nullptr;
        std::printf("| \"%s%s\" | %s | %s | %s |\n", path.c_str(), member.pchKey, fieldOf(member).c_str(),
                    nested ? "object" : typeOf(member).c_str(), ruleOf(member).c_str());
        if (nested)
        {
            printRows(*member.ptNested, path + member.pchKey + "\".\"");
        }
    }
}

} // namespace

int main()
{
    std::puts("# Wire members\n\n"
              "Every record with the members that it becomes, in the order in which they are written. Generated from "
              "the tables that\nthe encoders walk, by `pubsec-wire-members`; a test holds the page against them.\n\n"
              "| rule | the member is written when |\n|---|---|\n"
              "| always | always, an empty text as \"\" |\n"
              "| text | the text is neither empty nor \"Inv\" |\n"
              "| flag | the named presence flag is not 0 |\n"
              "| not -1, not -1.0 | the number is not exactly that |\n"
              "| pointer | the pointer is not null |\n\n"
              "\"SubImageList\" is not an encoder's member: the documents add it after an object's own members.");
    for (const TPubSecRecordTable& record : pubsec_members::c_atRecords)
    {
        std::printf("\n## %s\n\n| member | field | type | written |\n|---|---|---|---|\n", record.pchRecord);
        printRows(*record.ptTable, "");
    }
    return 0;
}
