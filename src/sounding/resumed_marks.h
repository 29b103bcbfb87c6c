// The time marks of a sounding that is taken up again: its `.tim` file.
#pragma once

namespace penlog {

/// Makes the file whole. At the last depth marks below the last row are taken out, since their
/// depths are marked again: each stands once, with the later time. What is taken out or begun anew
/// is told, and kept beside but for a torn line. `PictureCount` becomes that of the marks. The
/// sounding can go on without them: the operator decides where the file refuses.
void MendTimFile();

}  // namespace penlog
