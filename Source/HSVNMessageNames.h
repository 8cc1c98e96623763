#pragma once

#include <type_traits>

/// Names, as data members of `Names`, beside those of an application's class: one that both have is ambiguous here,
/// whatever stands behind it in the class, overloaded or private. A name that is not ambiguous the class does not have.
/// From a final class nothing can be derived; of its names nothing is known here.
template <class Application, class Names, bool isFinal = std::is_final_v<Application>>
struct HSVNNamesBeside : Application, Names
{
};

template <class Application, class Names>
struct HSVNNamesBeside<Application, Names, true> : Names
{
};
