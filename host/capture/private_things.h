#pragma once
// What is private in a capture, and its replacement everywhere. First all texts are searched, then the
// stand-ins are given out, then all texts are written over.
//
// One original has one stand-in in the whole capture, whatever its letter case. docs/privacy.md tells the
// same for readers.

#include "host/capture/coded_text.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tarnwick::host {

enum class PrivateKind { kUser, kMachine, kAccount, kSid, kMail };

struct PrivateThing {
  PrivateKind kind = PrivateKind::kUser;
  bool everywhere = false;  // wherever it stands as a word; otherwise only where its place tells what it is
  bool replaced = false;    // it did stand somewhere
  std::u32string standIn = {};
};

struct PrivateThings {
  std::map<std::u32string, PrivateThing> byText;  // the originals in lower case
};

// A name that is known from elsewhere. Nothing for an empty one; a word that stands on every machine, such as
// "games", is replaced only where its place tells that it is a name.
void AddPrivate(PrivateThings& things, const std::string& name, PrivateKind kind);

// Adds what a text has in it: paths of profiles, SIDs, mail addresses, Steam ids, named accounts.
void FindPrivate(PrivateThings& things, std::string_view text);

// The same for bytes, which may hold UTF-16 too.
void FindPrivateInBytes(PrivateThings& things, std::string_view bytes);

// Is this the name of a value or field that holds an account?
bool NamesAnAccount(const std::string& field);

// To be called once, when everything has been searched. The first user by name is the one called `user`.
void GiveOutStandIns(PrivateThings& things, const std::string& user);

void ReplacePrivate(PrivateThings& things, std::string& text);
void ReplacePrivateInBytes(PrivateThings& things, std::string& bytes);

// Replaces a text that is nothing but a name, be it the most common word.
void ReplaceWhole(PrivateThings& things, std::string& name);

// A number whose digits are private, such as an account's id, has that of the stand-in.
uint32_t ReplacedNumber(PrivateThings& things, uint32_t number);

}  // namespace tarnwick::host
