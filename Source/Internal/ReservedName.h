#pragma once

#include <string>

/// Refuses a local path whose name is one of Subversion's administrative directory, or that lies in the one of a
/// working copy, also by way of a link: to change anything there is to lose the working copy.
///
/// @param target  a local path, absolute or relative to the current folder, or a URL, which is never refused
/// @throws HSVNException, `HSVNStatusCode::ReservedFileName`, that names the target
///
/// Which names these are is what svn_wc_is_adm_dir says of the current bundle.
void HSVNRequireUnreserved(const std::string& target);

/// Whether a name is that of an administrative directory.
///
/// Stands for svn_wc_is_adm_dir.
bool HSVNIsReservedName(const std::string& name);
