'use strict';
// What a caller hands over, checked before native code sees it.

const { TarnwickError } = require('./errors');

const badArgument = (message) => new TarnwickError('BAD_ARGUMENT', message);

/** A text without zeros, which would cut it short on the other side. */
function textOf(value, name) {
  if (typeof value !== 'string') throw badArgument(`${name} must be a string, not ${typeof value}`);
  if (value.includes('\0')) throw badArgument(`${name} must not contain a zero character`);
  return value;
}

/** The same, or null for a text that the caller leaves out. */
const optionalText = (value, name) => (value === undefined || value === null ? null : textOf(value, name));

function int32Of(value, name) {
  if (value !== (value | 0)) throw badArgument(`${name} must be an integer of 32 bits`);
  return value;
}

/** The options of a call that can do without any. */
function optionsOf(value) {
  if (value === undefined) return {};
  if (typeof value !== 'object' || value === null) throw badArgument('options must be an object');
  return value;
}

// The library looks for quotes and braces and decodes no escapes, so a text that holds one can't be asked for, and
// JSON.stringify would double backslashes.
function memberOf(request, name) {
  const value = textOf(request[name] ?? '', name);
  if (/["{}]/.test(value)) throw badArgument(`${name} must not contain a double quote or a brace: ${value}`);
  return `"${name}":"${value}"`;
}

function objectOf(request) {
  if (typeof request !== 'object' || request === null || !request.exeName) {
    throw badArgument('each request must be an object with an exeName');
  }
  // All three in this order: the library takes a value that equals a later member's name for that member otherwise.
  return `{${['exeName', 'exePath', 'name'].map((name) => memberOf(request, name)).join(',')}}`;
}

/** The text that asks the library for these games. */
function requestOf(requests) {
  if (!Array.isArray(requests)) throw badArgument('requests must be an array');
  return `[${requests.map(objectOf).join(',')}]`;
}

module.exports = { badArgument, int32Of, optionalText, optionsOf, requestOf, textOf };
