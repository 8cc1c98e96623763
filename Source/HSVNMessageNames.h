#pragma once

#include <type_traits>

/// Names, as data members of `Names`, beside those of an application's class: one that both have is ambiguous here,
/// whatever stands behind it in the class, overloaded or private. A name that is not ambiguous the class does not have.
/// From a final class nothing can be derived; of its names nothing is known here.
template <class Application, class Names, bool isFinal = std::is_final_v<Application>>
struct HSVNNamesBeside : Application, Names
{
};

/// The names alone, of a final class.
template <class Application, class Names>
struct HSVNNamesBeside<Application, Names, true> : Names
{
};

/// Fails to compile for an application's class that has a message's name but cannot be sent the message, which would
/// silently never be called. Of a final class only what is public and not overloaded is found.
///
/// @param isAnswered  whether the class can be sent the message
/// @param Receiver    the library's class whose message it is; its names are those of `Receiver##Names`
#define HSVN_REQUIRE_MESSAGE(isAnswered, message, Receiver)                                                            \
    static_assert((isAnswered) || (                                                                                    \
                                      requires { &HSVNNamesBeside<Application, Receiver##Names>::message; } &&         \
                                      !requires { &Application::message; }),                                           \
                  #message " is not public, or not " #Receiver "'s")

/// Fails to compile for an application's class whose function takes by value what it is to fill in, as the answer would
/// silently be lost. Overloads and templates are not looked at.
///
/// @param isLost  whether the one function of that name can be given something that nobody keeps
#define HSVN_REQUIRE_REFERENCES(isLost, message)                                                                       \
    static_assert(!(isLost), #message " takes by value what it is to fill in; take a reference")
