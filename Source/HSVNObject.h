#pragma once

#include "HSVNExport.h"

#include <iosfwd>
#include <memory>
#include <string>

/// The small root of the library's classes: a class name and a text form.
///
/// Objects that can be nil or are shared are held by `std::shared_ptr`; a null pointer is nil.
class HSVN_EXPORT HSVNObject
{
  public:
    virtual ~HSVNObject();

    /// The name of the object's concrete class, such as "HSVNLocalPath".
    virtual std::string className() const = 0;

    /// A text for logs and debuggers; the default object description unless a class gives its own.
    virtual std::string description() const;

    /// The default object description, which is unique per live object: "<HSVNLock: 0x55d0c8a3b2a0>".
    std::string objectDescription() const;

  protected:
    HSVNObject() = default;
    HSVNObject(const HSVNObject&) = default;
    HSVNObject(HSVNObject&&) = default;
    HSVNObject& operator=(const HSVNObject&) = default;
    HSVNObject& operator=(HSVNObject&&) = default;
};

using HSVNObjectRef = std::shared_ptr<const HSVNObject>;

/// The object's description, or "(null)" for nil.
HSVN_EXPORT std::string HSVNDescription(const HSVNObject* object);

/// Writes the object's description.
HSVN_EXPORT std::ostream& operator<<(std::ostream& stream, const HSVNObject& object);
