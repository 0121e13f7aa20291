#pragma once

class Arguments;

/// What each command does. Every function returns the exit status.
namespace CommandHandlers {

int help(const Arguments &arguments);

int listFile(const Arguments &arguments);
int checkFiles(const Arguments &arguments);
int copyFile(const Arguments &arguments);

int libraryList(const Arguments &arguments);
int libraryAdd(const Arguments &arguments);
int librarySet(const Arguments &arguments);
int libraryDuplicate(const Arguments &arguments);
int libraryRemove(const Arguments &arguments);
int librarySimilar(const Arguments &arguments);
int libraryExport(const Arguments &arguments);
int libraryCompose(const Arguments &arguments);
int libraryDoctor(const Arguments &arguments);

} // namespace CommandHandlers
