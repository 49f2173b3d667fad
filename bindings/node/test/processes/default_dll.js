'use strict';

try {
  require('tarnwick').load().close();
  console.log('loaded');
} catch (error) {
  console.log(error.code, error.message);
}
