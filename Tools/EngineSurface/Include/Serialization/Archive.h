#pragma once
// Reference: Runtime/Core/Public/Serialization/Archive.h (FArchiveState, FArchive)

#include "CoreTypes.h"

class FArchiveState
{
public:
	virtual ~FArchiveState() {}

	bool IsError() const { return ArIsError; }
	void SetError() { ArIsError = true; }
	void ClearError() { ArIsError = false; }

protected:
	bool ArIsError = false;
};

class FArchive : public FArchiveState
{
public:
	virtual void Serialize(void* /*V*/, int64 /*Length*/) {}
	virtual int64 Tell() { return -1; }
	virtual int64 TotalSize() { return -1; }
	virtual bool AtEnd()
	{
		const int64 Pos = Tell();
		return Pos != -1 && Pos >= TotalSize();
	}
	virtual void Seek(int64 /*InPos*/) {}
	virtual void Flush() {}
	virtual bool Close() { return !IsError(); }
};
