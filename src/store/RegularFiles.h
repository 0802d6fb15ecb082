#pragma once
// A restriction on the files that SQLite opens.

/// From now on SQLite opens only regular files and folders in this process, and the devices that it
/// reads itself. Any other file fails to open; opening a pipe would wait for ever. The check
/// follows the open, so the file cannot be exchanged in between. Returns false and changes nothing
/// when this SQLite does not allow its system calls to be replaced.
bool openRegularFilesAlone();
