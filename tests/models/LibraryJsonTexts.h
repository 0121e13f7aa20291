#pragma once

#include "LibraryJson.h"

/// The text of a library file, put together by hand.
namespace LibraryJsonTexts {

struct Member {
    QByteArray key;
    QByteArray value;
    QByteArray type;
};

/// The members of one patch, in the order in which they are written.
inline QList<Member> patchMembers()
{
    QList<Member> members{{"id", "18446744073709551615", "unsigned"}, {"name", "\"Lead\"", "string"},
        {"hasUserIR", "true", "boolean"}, {"comment", "\"fat\"", "string"}, {"version", "\"V1.20\"", "string"},
        {"date", "700000000.125", "number"}};
    for (const char *flag : {"guitar", "bass", "clean", "crunch", "drive", "higain", "rythm", "solo", "empty"}) {
        members.append({flag, members.size() % 2 == 0 ? "true" : "false", "boolean"});
    }
    return members;
}

inline QByteArray objectOf(const QList<Member> &members)
{
    QByteArrayList texts;
    for (const Member &member : members) {
        texts.append("\"" + member.key + "\":" + member.value);
    }
    return '{' + texts.join(',') + '}';
}

inline QByteArray libraryOf(const QByteArray &patches, const QByteArray &defaultPatch = "null")
{
    return R"({"patches":[)" + patches + R"(],"defaultPatch":)" + defaultPatch + '}';
}

inline QByteArray libraryWith(const QByteArray &key, const QByteArray &value)
{
    QList<Member> members = patchMembers();
    for (Member &member : members) {
        if (member.key == key) {
            member.value = value;
        }
    }
    return libraryOf(objectOf(members));
}

} // namespace LibraryJsonTexts
