#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNMessageNames.h"

#include <cstdint>
#include <memory>
#include <utility>

/// What a handler answers when a destination exists.
enum HSVNOverwriteAnswer : std::int32_t
{
    HSVNOverwriteCancel = 0,  ///< stop the batch
    HSVNOverwriteReplace = 1, ///< replace what is there
    HSVNOverwriteSkip = 2     ///< leave this item and go on with the next
};

/// The messages that a batch sends its handler.
enum class HSVNMoveHandlerMessage : std::uint8_t
{
    willMoveNodeAtPath,
    promptToOverwriteNodeAtPath
};

/// What an application is asked during a batch of moves or copies, on the batch's thread.
///
/// Both messages are optional: one is sent only when `respondsTo` answers true for it. Applications write a class with
/// either of the functions and hand it over through `HSVNMoveHandlerFor`. An exception thrown here ends the batch and
/// reaches its caller; items before it stay moved.
class HSVN_EXPORT HSVNMoveHandler
{
  public:
    virtual ~HSVNMoveHandler();

    /// Whether the handler answers the message; none unless a subclass says so.
    virtual bool respondsTo(HSVNMoveHandlerMessage message) const;
    /// Tells which item comes next.
    ///
    /// @param copy         whether the source stays
    /// @param contextInfo  as it was given to the batch
    /// @return false to cancel the batch
    virtual bool willMoveNodeAtPath(const HSVNPathRef& source, const HSVNPathRef& destination, bool copy,
                                    const HSVNContextRef& context, void* contextInfo);
    /// Asks what to do about a destination that exists.
    ///
    /// @return one of `HSVNOverwriteAnswer`; anything else ends the batch with an exception
    virtual std::int32_t promptToOverwriteNodeAtPath(const HSVNPathRef& destination, bool copy,
                                                     const HSVNContextRef& context, void* contextInfo);

  protected:
    HSVNMoveHandler() = default;
    HSVNMoveHandler(const HSVNMoveHandler&) = default;
    HSVNMoveHandler& operator=(const HSVNMoveHandler&) = default;
};

using HSVNMoveHandlerRef = std::shared_ptr<HSVNMoveHandler>;

/// The names of the messages; see `HSVNNamesBeside`.
struct HSVNMoveHandlerNames
{
    int willMoveNodeAtPath;
    int promptToOverwriteNodeAtPath;
};

/// Makes a handler of an application's class, which declares whichever of `HSVNMoveHandler`'s functions it answers.
/// A message is answered by a public function that takes its arguments and answers its result. A class that has a
/// message's name for anything else alone does not compile, and neither does one where the function is private.
template <class Application>
class HSVNMoveHandlerFor : public Application, public HSVNMoveHandler
{
  public:
    // The parameters' names keep clear of the members of the application's class, which they would hide.

    /// Hands the arguments on to the constructor of the application's class.
    template <class... Arguments>
    explicit HSVNMoveHandlerFor(Arguments&&... theArguments) : Application{std::forward<Arguments>(theArguments)...}
    {
    }

    bool respondsTo(HSVNMoveHandlerMessage theMessage) const override
    {
        return theMessage == HSVNMoveHandlerMessage::willMoveNodeAtPath ? answersMoves : answersOverwrites;
    }

    bool willMoveNodeAtPath(const HSVNPathRef& theSource, const HSVNPathRef& theDestination, bool isCopy,
                            const HSVNContextRef& theContext, void* theContextInfo) override
    {
        if constexpr (answersMoves) {
            return Application::willMoveNodeAtPath(theSource, theDestination, isCopy, theContext, theContextInfo);
        } else {
            return HSVNMoveHandler::willMoveNodeAtPath(theSource, theDestination, isCopy, theContext, theContextInfo);
        }
    }

    std::int32_t promptToOverwriteNodeAtPath(const HSVNPathRef& theDestination, bool isCopy,
                                             const HSVNContextRef& theContext, void* theContextInfo) override
    {
        if constexpr (answersOverwrites) {
            return Application::promptToOverwriteNodeAtPath(theDestination, isCopy, theContext, theContextInfo);
        } else {
            return HSVNMoveHandler::promptToOverwriteNodeAtPath(theDestination, isCopy, theContext, theContextInfo);
        }
    }

  private:
    static constexpr bool answersMoves =
        requires(Application & a, const HSVNPathRef& path, const HSVNContextRef& context, void* contextInfo)
    {
        bool{a.willMoveNodeAtPath(path, path, bool{}, context, contextInfo)};
    };
    static constexpr bool answersOverwrites =
        requires(Application & a, const HSVNPathRef& path, const HSVNContextRef& context, void* contextInfo)
    {
        std::int32_t{a.promptToOverwriteNodeAtPath(path, bool{}, context, contextInfo)};
    };

    HSVN_REQUIRE_MESSAGE(answersMoves, willMoveNodeAtPath, HSVNMoveHandler);
    HSVN_REQUIRE_MESSAGE(answersOverwrites, promptToOverwriteNodeAtPath, HSVNMoveHandler);
};
