#pragma once

#include <string>

namespace kelvo {

/// The database's file name, in the program's folder as in the operator's data folder.
inline constexpr char kDatabaseFile[] = "kelvo.mdb";

/// What decides where the programs keep what they write.
struct DataPlace {
  std::string programFolder;   ///< absolute, without a slash at its end
  bool programFolderWritable;  ///< for this user
  std::string userDataFolder;  ///< the user's own, which need not exist
};

/// The folder for the database, the draft and the simulator's files: the program's own where that
/// can be written, so that a copied folder keeps everything together. Otherwise, and under the
/// system's library folders even for the administrator, the user's.
std::string DataFolder(const DataPlace& place);
/// The same on this machine, for the user who runs the program. Touches nothing.
std::string DataFolder(const std::string& programFolder);

/// The folder that the running program lies in, as the system has it: its name need not be UTF-8.
std::string ProgramFolder();

/// Why the system could not do something with a file, UTF-8: "kein Platz mehr".
std::string FileReason(int error);

/// Makes the folder, with those above it, where it is missing: for this user alone. Throws
/// std::runtime_error, for the operator, naming the folder and the reason.
void MakeDataFolder(const std::string& dataFolder);

/// Copies the delivered database into a data folder that has none yet; one that lies there, as in
/// the program's own folder, stays as it is. Throws as MakeDataFolder does, naming the copy; what
/// there is then of it is removed.
void TakeDeliveredDatabase(const std::string& programFolder, const std::string& dataFolder);

}  // namespace kelvo
