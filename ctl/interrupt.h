// Ctrl-C. It never ends the program by itself: what runs looks whether it was pressed, and ends
// where nothing is half-done.
#ifndef CTL_INTERRUPT_H
#define CTL_INTERRUPT_H

#include <chrono>

namespace kioctl {

// Takes SIGINT and SIGTERM from now on.
void CatchInterrupts();

// How often it was pressed.
int Interrupts();

// Throws Interrupted() when it was pressed.
void StopIfInterrupted();

// The same, but after a second one when it `insists` on its end.
void StopIfInterruptedUnless(bool insists);

// Sleeps, and throws Interrupted() when it is pressed.
void Pause(std::chrono::milliseconds time);

// Sleeps whatever is pressed.
void PauseAnyway(std::chrono::milliseconds time);

}  // namespace kioctl

#endif  // CTL_INTERRUPT_H
