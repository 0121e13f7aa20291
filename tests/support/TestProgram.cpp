#include "TestProgram.h"

#include <cstdio>
#include <map>
#include <string>

namespace {

std::map<std::string, TestProgram::Run> &registered()
{
    static std::map<std::string, TestProgram::Run> runs;
    return runs;
}

/// TestByteReader stands in tst_ByteReader.cpp, and CTest calls it tst_ByteReader.
std::string testName(const std::string &className)
{
    const std::string prefix = "Test";
    return "tst_" + (className.starts_with(prefix) ? className.substr(prefix.size()) : className);
}

} // namespace

namespace TestProgram {

Registration::Registration(const char *className, Run run)
{
    if (!registered().emplace(testName(className), run).second) {
        qFatal("two test classes are called %s", className);
    }
}

} // namespace TestProgram

int main(int argc, char **argv)
{
    const auto found = argc > 1 ? registered().find(argv[1]) : registered().end();
    if (found == registered().end()) {
        std::fprintf(stderr, "usage: %s TEST [FUNCTION...] [option of Qt Test...]\nThe tests are\n", argv[0]);
        for (const auto &[name, run] : registered()) {
            std::fprintf(stderr, "  %s\n", name.c_str());
        }
        return 2;
    }
    // Qt sees its own arguments only.
    argv[1] = argv[0];
    return found->second(argc - 1, argv + 1);
}
