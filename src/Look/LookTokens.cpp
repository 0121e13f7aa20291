#include "LookTokens.h"

const LookTokens &LookTokens::current()
{
    static const LookTokens tokens;
    return tokens;
}
