// -XREF: attaching, detaching, reloading and listing external references.
#pragma once

namespace korva::commands {

void registerXrefCommand();

}  // namespace korva::commands
