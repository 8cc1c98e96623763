#include "HSVNCaughtExceptionPrivate.h"

#include <exception>

HSVNPlatformExceptionRef HSVNCaughtException()
{
    try {
        throw;
    } catch (const HSVNPlatformException& exception) {
        return exception.copy();
    } catch (const std::exception& exception) {
        return HSVNGenericException(exception.what()).copy();
    } catch (...) {
        return HSVNGenericException("an exception of an unknown class").copy();
    }
}
