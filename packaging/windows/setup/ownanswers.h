#pragma once

#include <map>
#include <string>
#include <vector>

/// The MD5 sum in lower case hexadecimal digits by the file's name.
using AnswerSums = std::map<std::wstring, std::wstring>;

/// Reads "0.txt=<sum>,1.txt=<sum>".
AnswerSums answerSums(const std::wstring &text);

/// Moves those answers of \a folder that are not the shipped ones into the folder beside it whose
/// name ends in ".own", out of the way of an installation. Gives their names, and sets \a failed to
/// the first that could not be moved.
std::vector<std::wstring> setOwnAnswersAside(const std::wstring &folder, const AnswerSums &shipped,
                                             std::wstring *failed);

/// Moves them back, over what has been installed meanwhile. Gives their names as above.
std::vector<std::wstring> putOwnAnswersBack(const std::wstring &folder, std::wstring *failed);

/// Copies the *.txt files of \a source into \a folder. Gives their names as above.
std::vector<std::wstring> copyAnswers(const std::wstring &source, const std::wstring &folder,
                                      std::wstring *failed);
