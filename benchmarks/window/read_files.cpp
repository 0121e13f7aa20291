// The least that a program does that reads a library: read_files DIRECTORY opens, reads and closes every file there.

#include <array>
#include <cstdio>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

int main(int argc, char *argv[])
{
    DIR *const directory = argc == 2 ? ::opendir(argv[1]) : nullptr;
    if (directory == nullptr) {
        std::fputs("usage: read_files DIRECTORY\n", stderr);
        return 2;
    }
    static std::array<char, 1U << 16U> buffer;
    while (const dirent *entry = ::readdir(directory)) {
        if (entry->d_type != DT_REG) {
            continue;
        }
        const std::string path = std::string(argv[1]) + '/' + &entry->d_name[0];
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        ssize_t count = 1;
        while (count > 0) {
            count = ::read(file, buffer.data(), buffer.size());
        }
        if (file < 0 || count < 0) {
            std::perror(path.c_str());
            return 2;
        }
        ::close(file);
    }
    ::closedir(directory);
    return 0;
}
