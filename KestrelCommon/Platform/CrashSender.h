#pragma once // Writes a report folder when the program crashes.

#include <cstddef>
#include <string>

/// The crash client. Reports stay on this machine: a folder below the temp folder with
/// "reason.txt", "stack.txt", copies of the attached files, "last_json.json", "last_data.bin".
///
/// Catches SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL and uncaught exceptions, then lets the signal
/// take its course. Does nothing under a debugger. Setters may be called from any thread.
namespace BugSplatUtil
{

/// Starts it; once. The three values stand in the report.
void init(const std::string& sDatabase, const std::string& sApplication, const std::string& sVersion);
void shutdown();

/// Where reports go; before it is known, a crash only tells its reason on standard error.
void setTempFolder(const std::string& sFolder);

/// A file that each report gets a copy of; real path.
void addFile(const std::string& sPath);

/// The document that is open; empty: none.
void setCurrentFile(const std::string& sPath);

/// What was being read last; an empty text or a null pointer clears it.
void setLastJson(const std::string& sText);
void setLastData(const void* pData, size_t uSize);
void setLastLuaDeserialize(const std::string& sName);

} // namespace BugSplatUtil
