'use strict';

/** What went wrong: `code` is for programs, the message tells people what to do about it. */
class TarnwickError extends Error {
  constructor(code, message, options) {
    super(message, options);
    this.name = 'TarnwickError';
    this.code = code;
  }
}

module.exports = { TarnwickError };
