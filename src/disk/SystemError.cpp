#include "SystemError.h"

#include <cerrno>
#include <system_error>

QString systemError()
{
    return QString::fromLocal8Bit(std::error_code(errno, std::generic_category()).message().c_str());
}
