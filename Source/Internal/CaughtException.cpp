#include "Internal/CaughtException.h"

#include <exception>

HSVNPlatformExceptionRef HSVNCaughtException()
{
    try {
        throw;
    } catch (const HSVNPlatformException& exception) {
        return exception.copy();
    } catch (const std::exception& exception) {
        const char* const reason = exception.what(); // an application's class may answer null
        return HSVNGenericException(reason ? reason : "an exception without a reason").copy();
    } catch (...) {
        return HSVNGenericException("an exception of an unknown class").copy();
    }
}
