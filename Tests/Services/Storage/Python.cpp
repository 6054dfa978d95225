#include "Python.h"

#include "TemporaryDirectory.h"

#include <cstdlib>

std::string runPython(const std::string& script, const std::string& arguments)
{
    const TemporaryDirectory directory;
    directory.write("script.py", script);
    const std::string command = "PATH=/usr/bin:\"$PATH\" python3 '" + directory.path("script.py") + "' " + arguments
        + " > '" + directory.path("output") + "' 2>&1";
    const int status = std::system(command.c_str());
    return directory.read("output") + (status == 0 ? "" : "(failed)");
}
