#pragma once

/// Keeps Qt's bearer plugins out of this process. They watch the state of the machine's
/// network over the system bus, from threads of their own, for an interface of Qt that
/// nothing here uses; requests work without them. Call it once, on the main thread, before the
/// first request and before there are threads that load plugins.
void leaveOutBearerPlugins();
