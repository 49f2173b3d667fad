'use strict';
// Which file is loaded, and what is wrong with it where it can't be.

const fs = require('fs');
const path = require('path');
const koffi = require('koffi');
const { badArgument, textOf } = require('./arguments');
const { TarnwickError } = require('./errors');

const PACKAGED_DLL = path.join(__dirname, '..', 'Tarnwick.dll');

// The machine in a program file's head, as Node names it.
const MACHINES = { 0x014c: 'ia32', 0x8664: 'x64', 0xaa64: 'arm64' };

const FocusCallback = koffi.proto('void', ['str', 'uint32_t', 'str']);

// Result and arguments of every export. Buffers are handed over as they are.
const EXPORTS = {
  IA_RunMultiPlatformGameScanJson: ['int', ['str', 'void *', 'int']],
  RunMultiPlatformGameScan: ['void', []],
  IA_GetGameDetailsByPathJson: ['int', ['str', 'void *', 'int']],
  IA_RefreshCache: ['int32_t', []],
  IA_GetAppsJson: ['int32_t', ['int32_t', 'int32_t', 'str16', 'void *', 'int32_t']],
  IA_GetAppsJsonAll: ['int32_t', ['str16', 'void *', 'int32_t']],
  IA_FindGamesJson: ['int32_t', ['str', 'void *', 'int32_t']],
  IA_FindGamesByFile: ['int32_t', ['str', 'void *', 'int32_t']],
  SetFocusCallbackEx: ['void', [koffi.pointer(FocusCallback)]],
  StartFocusWatch: ['void', ['int32_t']],
  StopFocusWatch: ['void', []],
};

// A bare name would be looked for in the current directory and in PATH, where anybody may have put a file of that name.
function checkedPath(dllPath) {
  const { root } = path.parse(textOf(dllPath, 'the path of the DLL'));
  if (/^([a-z]:[\\/]|[\\/]{2})/i.test(root)) return dllPath;
  throw badArgument(`the path of the DLL must be whole, as of path.join(__dirname, 'Tarnwick.dll'), not ${dllPath}`);
}

function headOf(dllPath) {
  let file;
  try {
    file = fs.openSync(dllPath, 'r');
  } catch (cause) {
    const why = dllPath === PACKAGED_DLL ? 'this package came without the library' : 'there is no library to be read';
    throw new TarnwickError('DLL_MISSING', `${why}: give load() the path of Tarnwick.dll (${cause.message})`, { cause });
  }
  try {
    const head = Buffer.alloc(4096);
    return head.subarray(0, fs.readSync(file, head, 0, head.length, 0));
  } catch (cause) {
    throw new TarnwickError('NOT_A_LIBRARY', `${dllPath} cannot be read: ${cause.message}`, { cause });
  } finally {
    fs.closeSync(file);
  }
}

/** The machine a program file was built for, 0 where the bytes are no head of one. */
function machineOf(head) {
  if (head.length < 64 || head.toString('latin1', 0, 2) !== 'MZ') return 0;
  const start = head.readUInt32LE(60);
  if (start + 6 > head.length || head.toString('latin1', start, start + 4) !== 'PE\0\0') return 0;
  return head.readUInt16LE(start + 4);
}

// Windows calls another bitness "not a valid Win32 application", which doesn't tell people what to do.
function checkMachine(dllPath) {
  const machine = machineOf(headOf(dllPath));
  if (machine === 0) throw new TarnwickError('NOT_A_LIBRARY', `${dllPath} is no Windows library: is it damaged?`);
  const name = MACHINES[machine] ?? `machine 0x${machine.toString(16)}`;
  if (name === process.arch) return;
  throw new TarnwickError('WRONG_BITNESS',
    `${dllPath} is built for ${name} and this Node.js for ${process.arch}: use a Node.js for ${name}`);
}

function loaded(dllPath) {
  try {
    return koffi.load(dllPath);
  } catch (cause) {
    throw new TarnwickError('LOAD_FAILED', `Windows cannot load ${dllPath}: ${cause.message}`, { cause });
  }
}

function exportOf(library, name, dllPath) {
  try {
    return library.func(name, ...EXPORTS[name]);
  } catch (cause) {
    throw new TarnwickError('EXPORT_MISSING',
      `${dllPath} has no function ${name}: take the Tarnwick.dll of this package's version`, { cause });
  }
}

/** The exports of the library by their names, and `unload`, behind which none of them may be called. */
function openLibrary(dllPath = PACKAGED_DLL) {
  if (process.platform !== 'win32') {
    throw new TarnwickError('UNSUPPORTED_PLATFORM', `Tarnwick.dll runs on Windows alone, and this is ${process.platform}`);
  }
  checkMachine(checkedPath(dllPath));
  const library = loaded(dllPath);
  try {
    const exported = Object.keys(EXPORTS).map((name) => [name, exportOf(library, name, dllPath)]);
    return { ...Object.fromEntries(exported), unload: () => library.unload() };
  } catch (error) {
    library.unload();
    throw error;
  }
}

module.exports = { FocusCallback, openLibrary };
