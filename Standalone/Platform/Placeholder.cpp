namespace Maptorn {}
