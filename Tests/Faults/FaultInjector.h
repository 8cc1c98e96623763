#pragma once

#include <string>

/// Lets one of the calls fail by which this program changes or opens files, whoever makes it: the library, Subversion
/// or SQLite.
///
/// The program's own definitions of those calls (open, write, pwrite, ftruncate, fsync, rename, unlink, mkdir and their
/// kin) stand before the C library's. They count and do nothing else until a fault is set.
namespace FaultInjector {

enum class Fault
{
    Once,    ///< the n-th call fails
    Onwards, ///< the n-th call and all after it fail, as on a full disk
    Kill     ///< the program is killed in place of the n-th call
};

/// Starts to count.
///
/// @param number  which call fails; 0 for none
void arm(Fault fault, int number);
/// Ends it.
///
/// @return how many calls there were
int disarm();
/// The number of the last call that renamed something; 0 for none.
int lastRenaming();
/// The name of the call that failed first; empty when none did.
std::string failedCall();

} // namespace FaultInjector
