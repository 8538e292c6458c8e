#pragma once

/// From now on SIGINT and SIGTERM only ask the tool to stop.
void CatchInterrupts();

/// Whether the user has asked to stop.
bool StopRequested();

/// The same, and forgets it: what follows runs until the user asks again.
bool TakeStopRequest();

/// Throws Interrupted if the user has asked to stop. Called between the stages of a command.
void StopIfInterrupted();
