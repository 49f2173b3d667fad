import tarnwick from './index.js';

export const { load, TarnwickError } = tarnwick;
