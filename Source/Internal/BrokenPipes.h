#pragma once

/// As long as the object lives, what this thread writes to a connection or a program that has ended fails, as any other
/// call does, instead of ending the process by a signal. Those made inside of another one do nothing.
class HSVNBrokenPipes
{
  public:
    HSVNBrokenPipes();
    ~HSVNBrokenPipes();
    HSVNBrokenPipes(const HSVNBrokenPipes&) = delete;
    HSVNBrokenPipes& operator=(const HSVNBrokenPipes&) = delete;

  private:
    bool _wasBlocked;
};
