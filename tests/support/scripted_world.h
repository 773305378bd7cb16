#pragma once

/// The world as tests make it: scripted ports, a folder and an embedded server of their own. A test that
/// needs only the ports includes support/scripted_ports.h.

#include "support/scripted_ports.h"
#include "support/temp_folder.h"
#include "support/test_server.h"
