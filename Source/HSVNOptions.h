#pragma once

#include "HSVNExport.h"
#include "HSVNObject.h"

#include <memory>
#include <string>

/// Root of the option classes: plain values that tell an operation what its caller chose.
///
/// An option object is made with `defaults`, changed with its setters and handed to an operation, which only reads it.
/// Options are copied with `copy`. Descriptions show the fields.
class HSVN_EXPORT HSVNOptions : public HSVNObject
{
  public:
    static constexpr const char* staticClassName = "HSVNOptions";

    /// A new object with the initial values.
    static std::shared_ptr<HSVNOptions> defaults() { return std::make_shared<HSVNOptions>(); }
    /// A new object of the same concrete class with the same values; objects that fields hold are shared.
    ///
    /// @throws HSVNInternalInconsistencyException for a class that does not make copies of its own (`makeCopy`)
    std::shared_ptr<HSVNOptions> copy() const { return checkedCopy(); }

    std::string className() const override { return staticClassName; }

  protected:
    /// What `copy` answers. Each class makes an object of its own: an application's class, too, which derives from
    /// `HSVNOptionsOf<Class, Base>` or overrides this. An object of its base would lack what it adds.
    virtual std::shared_ptr<HSVNOptions> makeCopy() const { return std::make_shared<HSVNOptions>(*this); }
    /// `makeCopy`, of this object's class.
    std::shared_ptr<HSVNOptions> checkedCopy() const;
};

using HSVNOptionsRef = std::shared_ptr<const HSVNOptions>;

/// Gives an option class its name (from `Class::staticClassName`) and the operations that answer its own class.
template <class Class, class Base = HSVNOptions>
class HSVN_EXPORT HSVNOptionsOf : public Base
{
  public:
    /// A new object with the initial values.
    static std::shared_ptr<Class> defaults() { return std::make_shared<Class>(); }
    /// A new object with the same values; objects that fields hold are shared.
    std::shared_ptr<Class> copy() const { return std::static_pointer_cast<Class>(this->checkedCopy()); }

    std::string className() const override { return Class::staticClassName; }

  protected:
    std::shared_ptr<HSVNOptions> makeCopy() const override
    {
        return std::make_shared<Class>(static_cast<const Class&>(*this));
    }
};
