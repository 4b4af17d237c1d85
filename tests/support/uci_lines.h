// Reading the engine's answers line by line and word by word.
#pragma once

#include <sstream>
#include <string>
#include <vector>

inline std::vector<std::string> linesStartingWith(const std::string& output, const std::string& prefix) {
  std::istringstream lines(output);
  std::vector<std::string> found;
  for (std::string line; std::getline(lines, line);)
    if (line.compare(0, prefix.size(), prefix) == 0) found.push_back(line);
  return found;
}

// The info lines of a MultiPV search: "info depth D seldepth S multipv K ...".
inline std::vector<std::string> multiPvLines(const std::string& output) {
  std::vector<std::string> found;
  for (const std::string& line : linesStartingWith(output, "info depth "))
    if (line.find(" multipv ") != std::string::npos) found.push_back(line);
  return found;
}

inline std::string lastLineStartingWith(const std::string& output, const std::string& prefix) {
  std::vector<std::string> found = linesStartingWith(output, prefix);
  return found.empty() ? "" : found.back();
}

// The word behind the first occurrence of word in line, or "".
inline std::string wordAfter(const std::string& line, const std::string& word) {
  std::istringstream words(line);
  for (std::string w; words >> w;)
    if (w == word && words >> w) return w;
  return "";
}

inline int countOf(const std::string& text, const std::string& what) {
  int count = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}
