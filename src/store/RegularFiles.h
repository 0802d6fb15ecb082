#pragma once
// What SQLite may open.

/// From now on SQLite opens regular files and folders alone in this process, and of devices those
/// that it reads by itself. Anything else is a file that cannot be opened: at the other end of a
/// pipe it would wait for ever. It looks after the opening, so nothing can come between. False, and
/// nothing changes, where SQLite does not let its system calls be replaced.
bool openRegularFilesAlone();
