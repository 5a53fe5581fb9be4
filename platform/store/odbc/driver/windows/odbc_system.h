#pragma once

#include <windows.h>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
