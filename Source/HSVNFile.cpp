#include "HSVNFile.h"

HSVNNodeRef HSVNFile::copy() const
{
    auto file = std::make_shared<HSVNFile>(*this);
    file->unshareStatus();
    return file;
}
