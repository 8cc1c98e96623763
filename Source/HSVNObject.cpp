#include "HSVNObject.h"

#include <fmt/format.h>

#include <ostream>

HSVNObject::~HSVNObject() = default;

std::string HSVNObject::description() const { return objectDescription(); }

std::string HSVNObject::objectDescription() const { return fmt::format("<{}: {}>", className(), fmt::ptr(this)); }

std::string HSVNDescription(const HSVNObject* object) { return object ? object->description() : "(null)"; }

std::ostream& operator<<(std::ostream& stream, const HSVNObject& object) { return stream << object.description(); }
