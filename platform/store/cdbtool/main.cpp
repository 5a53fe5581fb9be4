#include <exception>
#include <new>

#include "platform/store/cdbtool/command_line.h"
#include "platform/store/cdbtool/console.h"
#include "platform/store/cdbtool/system.h"

int main(int argc, char** argv) {
  cdbtool::prepareStreams();
  cdbtool::noteInterrupts();
  try {
    return cdbtool::runCommandLine(cdbtool::argumentsOf(argc, argv));
  } catch (const std::bad_alloc&) {
    cdbtool::Console::complain("There is not enough memory.");
  } catch (const std::exception& error) {
    cdbtool::Console::complain(error.what());
  }
  return cdbtool::kFailed;
}
