#pragma once
// Reference: Runtime/Core/Public/Containers/ContainersFwd.h

class FString;
class FText;
class FName;
template <typename T> class TArray;
template <typename K, typename V> class TMap;
template <typename T> class TOptional;
