// The engine's name and version as the client and the console see them.
#pragma once

constexpr const char* engineName = "Tarvok64";
constexpr const char* engineVersion = "4.18 RQ";
