#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvo {

/// What the programs ask of the system for a file that they write. Each call does as the system's
/// one of that name, with errno. A test puts others in their place, so that one of them fails.
class FileCalls {
 public:
  FileCalls() = default;
  virtual ~FileCalls() = default;
  FileCalls(const FileCalls&) = delete;
  FileCalls& operator=(const FileCalls&) = delete;

  virtual int Open(const std::string& path, int flags, mode_t mode);
  virtual ssize_t Read(int file, char* bytes, std::size_t size);
  virtual ssize_t Write(int file, const char* bytes, std::size_t size);
  virtual int Sync(int file);
  virtual int Close(int file);
  virtual int Rename(const std::string& from, const std::string& to);
  virtual int Remove(const std::string& path);
};

/// Those that hold now: the system's, unless others were put in their place.
FileCalls& Files();
/// The system's again for a null pointer.
void SetFiles(FileCalls* calls);

/// A file while it is open.
class OpenFile {
 public:
  /// `flags` as of open(2); no program that is started takes it along.
  OpenFile(const std::string& path, int flags, mode_t mode = 0666);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  /// Where it is not, errno says why.
  bool IsOpen() const { return file_ >= 0; }
  int Get() const { return file_; }
  /// Writes all of it. Like the following, 0 or the system's number of the reason.
  int Write(std::string_view bytes) const;
  int Sync() const;
  int Close();
  /// Appends what there is up to the end, as long as `bytes` is not larger than `limit`: one
  /// character more says that there would have been more.
  int ReadUpTo(std::size_t limit, std::string& bytes) const;

 private:
  int file_;
};

/// Whether the name is taken, be it by a link that leads nowhere.
bool IsThere(const std::string& path);

/// Puts a file's new name, or its absence, on the disc as far as the system can. As above.
int SyncFolderOf(const std::string& path);

}  // namespace kelvo
